// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/DifferenceRows.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/comparison/ComparedValue.h"
#include "display/comparison/DifferenceWords.h"
#include "display/export/EntryFactTexts.h"
#include "display/export/PropertyLines.h"
#include "store/filter/PropertyLookup.h"

namespace {
const QString servicePlane = QStringLiteral("DxService");
constexpr std::size_t maxRowsBelow = 32; // of a new or gone collection, unless all is wanted

// A node is only rendered by that.
TavPropertyOutlineItem &shown(const TavRegistryProperty &node)
{
    return static_cast<TavPropertyOutlineItem &>(const_cast<TavRegistryProperty &>(node));
}

QString textOf(const TavRegistryProperty &node)
{
    const PropertyRef typed = ComparedValue::typed(node);
    return shown(typed ? *typed : node).displayValue().text();
}
} // namespace

DifferenceRows::DifferenceRows(const ExportedDifferences &differences,
                               const EntryDifference &difference)
    : differences_(differences)
{
    if (!difference.before || !difference.after) {
        if (differences.isWhole())
            addAllProperties(difference);
        return;
    }
    addFacts(difference);
    const PropertyDifferences properties = differences.comparison().propertyDifferences(
        difference, TavPropertyOutlineItem::staticPropertyClass());
    for (const auto &change : differences.changes(properties))
        addChange(change);
}

QString DifferenceRows::classAndDriver(const TavRegistryEntry &entry)
{
    RegistryValue made;
    const QString link = PropertyLookup::tableOf(entry, made).member(u"driver").toString();
    const QString driver = link.sliced(link.lastIndexOf(u'/') + 1);
    return driver.isEmpty() ? entry.DxcoreClass()
                            : tr("%1, driver %2").arg(entry.DxcoreClass(), driver);
}

QString DifferenceRows::pathOf(const TavRegistryEntry &entry)
{
    return EntryFactTexts::text(EntryFactTexts::Fact::Path, entry, servicePlane);
}

// A path says what its name, location and parent do.
void DifferenceRows::addFacts(const EntryDifference &difference)
{
    const QString older = pathOf(*difference.before);
    const QString newer = pathOf(*difference.after);
    constexpr FactDifferences inPath =
        FactDifferences(FactDifference::Name) | FactDifference::Location | FactDifference::Parent;
    const bool hasPath = difference.facts.testAnyFlags(inPath) && older != newer;
    if (hasPath)
        rows_.push_back({EntryFactTexts::title(EntryFactTexts::Fact::Path), older, newer});
    for (const auto &change : differences_.comparison().factChanges(difference)) {
        if (hasPath && inPath.testFlag(change.fact))
            continue;
        rows_.push_back({DifferenceWords::factTitle(change.fact),
                         change.before.isNull() ? std::nullopt : std::optional(change.before),
                         change.after.isNull() ? std::nullopt : std::optional(change.after)});
    }
}

void DifferenceRows::addChange(const PropertyDifferences::Change &change)
{
    const bool isPair = change.before && change.after && !change.before->isCollection() &&
                        !change.after->isCollection();
    if (!isPair) {
        if (change.before) {
            addSingle(change.path, *change.before, 0, false);
            addBelow(*change.before, 1, false);
        }
        if (change.after) {
            addSingle(change.path, *change.after, 0, true);
            addBelow(*change.after, 1, true);
        }
        return;
    }
    QString older = textOf(*change.before);
    QString newer = textOf(*change.after);
    if (older == newer) { // of different types
        older = tr("%1 (%2)").arg(older, shown(*change.before).typeName());
        newer = tr("%1 (%2)").arg(newer, shown(*change.after).typeName());
    }
    rows_.push_back({change.path, older, newer});
}

void DifferenceRows::addAllProperties(const EntryDifference &difference)
{
    const PropertyRef tree =
        difference.entry().copyOfProperties(TavPropertyOutlineItem::staticPropertyClass());
    if (tree)
        addBelow(*tree, 0, difference.after != nullptr);
}

void DifferenceRows::addBelow(const TavRegistryProperty &node, quint32 level, bool isNew)
{
    std::size_t added = 0;
    std::size_t leftOut = 0;
    PropertyLines::forEach(node, [&](const PropertyLines::Line &line) {
        if (differences_.isWhole() || added < maxRowsBelow) {
            addSingle(line.name, line.property, level + line.level, isNew);
            ++added;
        } else {
            ++leftOut;
        }
    });
    if (leftOut == 0)
        return;
    const QString text = tr("%1 more").arg(leftOut);
    Row row{.title = QStringLiteral("…"), .level = level, .isCollection = true};
    (isNew ? row.after : row.before) = text;
    rows_.push_back(std::move(row));
}

void DifferenceRows::addSingle(const QString &title, const TavRegistryProperty &property,
                               quint32 level, bool isNew)
{
    Row row{.title = title, .level = level, .isCollection = property.isCollection()};
    (isNew ? row.after : row.before) = textOf(property);
    rows_.push_back(std::move(row));
}
