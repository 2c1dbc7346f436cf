#include "explorer/EntryPathCompleter.h"

#include "store/TavDataStore.h"

#include <QLineEdit>
#include <QStringListModel>

namespace {
// The part of a path that is complete, up to the last "/".
QString beginOf(const QString &path)
{
    return path.left(path.lastIndexOf(u'/') + 1);
}
} // namespace

EntryPathCompleter::EntryPathCompleter(QLineEdit &field,
                                       std::shared_ptr<const TavDataStore> dataStore)
    : QCompleter(&field)
    , dataStore_(std::move(dataStore))
    , model_(new QStringListModel(this))
{
    setModel(model_);
    setCaseSensitivity(Qt::CaseInsensitive);
    setModelSorting(CaseInsensitivelySortedModel);
    model_->setStringList(candidates(begin_));
    field.setCompleter(this);
    connect(&field, &QLineEdit::textEdited, this, &EntryPathCompleter::update);
}

void EntryPathCompleter::update(const QString &text)
{
    const QString begin = beginOf(text);
    if (begin == begin_)
        return;
    begin_ = begin;
    model_->setStringList(candidates(text));
}

QStringList EntryPathCompleter::candidates(const QString &text) const
{
    const QString begin = beginOf(text);
    QStringList paths;
    if (begin.isEmpty()) {
        for (const QString &plane : dataStore_->registryPlanes())
            paths.append(plane + QLatin1String(":/"));
    } else {
        // Right after the plane, the "/" stands for an entry itself.
        const QString above = begin.chopped(begin.endsWith(QLatin1String(":/")) ? 0 : 1);
        const auto matches = dataStore_->entriesMatchingRegistryPath(above);
        for (const TavRegistryEntry *entry : matches.entries) {
            for (const TavRegistryEntry *child : entry->childrenInPlane(matches.plane))
                paths.append(begin + child->nameAtLocationInPlane(matches.plane));
        }
    }
    paths.sort(Qt::CaseInsensitive);
    paths.removeDuplicates();
    return paths;
}
