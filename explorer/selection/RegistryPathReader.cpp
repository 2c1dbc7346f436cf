// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/RegistryPathReader.h"

#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

namespace {
EntrySet childrenNamed(const QString &name, const EntrySet &parents, const QString &plane)
{
    EntrySet children;
    for (const TavRegistryEntry *parent : parents) {
        for (TavRegistryEntry *child : parent->childrenWithNameAtLocation(name, plane))
            children.insert(child);
    }
    return children;
}

bool isOfTop(const QString &begin)
{
    return begin.endsWith(QLatin1String(":/"));
}

// The path of the entry below which a text that ends in "/" continues.
QString pathOf(const QString &begin)
{
    return visibleText(isOfTop(begin) ? begin : begin.chopped(1));
}
} // namespace

RegistryPathReader::RegistryPathReader(std::shared_ptr<const TavDataStore> dataStore)
    : dataStore_(std::move(dataStore))
{}

const QStringList &RegistryPathReader::candidates(const QString &text)
{
    read(text);
    return candidates_;
}

RegistryPathReader::Problem RegistryPathReader::problem(const QString &text)
{
    if (!isInPlane(text) && text.contains(QLatin1String(":/")))
        return otherProblem(text);
    read(text);
    const bool isBegun =
        std::any_of(candidates_.cbegin(), candidates_.cend(), [&](const QString &path) {
            return path.startsWith(text, Qt::CaseInsensitive);
        });
    if (problem_ || isBegun || text.isEmpty())
        return problem_;
    if (!isInPlane(text))
        return otherProblem(text);
    if (begin_->isEmpty())
        return planeProblem(text);
    if (text != *begin_)
        return nameProblem(*begin_, text.sliced(begin_->size()));
    if (isOfTop(text))
        return std::nullopt;
    return {{text.size() - 1, 1, tr("There is nothing below %1").arg(pathOf(text))}};
}

RegistryPathReader::Problem RegistryPathReader::problemOfWhole(const QString &path)
{
    if (!isInPlane(path))
        return otherProblem(path);
    read(path + u'/');
    return problem_;
}

void RegistryPathReader::read(const QString &text)
{
    const bool isPath = isInPlane(text);
    const QString begin = isPath ? text.left(text.lastIndexOf(u'/') + 1) : text;
    if (begin_ == begin)
        return;
    begin_ = begin;
    problem_ = isPath && !begin.isEmpty() ? planeProblem(begin) : std::nullopt;
    candidates_.clear();
    if (!isPath || begin.isEmpty()) {
        for (const QString &plane : dataStore_->registryPlanes())
            candidates_.append(plane + QLatin1String(":/"));
        if (!begin.isEmpty())
            candidates_ += dataStore_->locator().candidates(begin);
    } else if (!problem_) {
        const qsizetype colon = begin.indexOf(u':');
        readNames(colon + 2, begin.left(colon));
    }
    candidates_.sort(Qt::CaseInsensitive);
    candidates_.removeDuplicates();
}

bool RegistryPathReader::isInPlane(const QString &text) const
{
    const qsizetype colon = text.indexOf(u':');
    return colon > 0 && dataStore_->registryPlanes().contains(text.first(colon));
}

RegistryPathReader::Problem RegistryPathReader::otherProblem(const QString &text) const
{
    if (!dataStore_->locator().find(text).empty())
        return std::nullopt;
    if (text.startsWith(u'/'))
        return {{0, text.size(), tr("There is nothing at %1").arg(visibleText(text))}};
    return planeProblem(text);
}

// Directly after the plane, the "/" leads to the root's child.
void RegistryPathReader::readNames(qsizetype position, const QString &plane)
{
    EntrySet level;
    const TavRegistryEntry *const root = dataStore_->registryRoot();
    if (root && !root->childrenInPlane(plane).empty())
        level.insert(root->childrenInPlane(plane).front());
    while (position < begin_->size()) {
        const qsizetype slash = begin_->indexOf(u'/', position);
        const QString name = begin_->sliced(position, slash - position);
        level = childrenNamed(name, level, plane);
        if (level.isEmpty()) {
            problem_ = nameProblem(begin_->left(position), name);
            return;
        }
        position = slash + 1;
    }
    for (const TavRegistryEntry *entry : std::as_const(level)) {
        for (const TavRegistryEntry *child : entry->childrenInPlane(plane))
            candidates_.append(*begin_ + child->nameAtLocationInPlane(plane));
    }
}

RegistryPathReader::Problem RegistryPathReader::planeProblem(const QString &text) const
{
    const auto end =
        std::find_if(text.begin(), text.end(), [](QChar c) { return c == u':' || c == u'/'; });
    const QString plane = text.left(end - text.begin());
    if (!dataStore_->registryPlanes().contains(plane))
        return {{0, std::max<qsizetype>(plane.size(), 1),
                 tr("There is no plane “%1”").arg(visibleText(plane))}};
    const QString rest = text.sliced(plane.size());
    if (rest.startsWith(QLatin1String(":/")))
        return std::nullopt;
    return {{plane.size(), rest.size(), tr("“:/” follows the plane in a path")}};
}

RegistryPathReader::Problem RegistryPathReader::nameProblem(const QString &begin,
                                                            const QString &name) const
{
    const QString missing = name.isEmpty() ? QStringLiteral("/") : name;
    return {{begin.size(), missing.size(),
             tr("There is no “%1” below %2").arg(visibleText(missing), pathOf(begin))}};
}
