// SPDX-License-Identifier: Apache-2.0
#include "display/export/CsvExport.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/export/CsvCell.h"

namespace {
using Type = RegistryValue::Type;

// Calls with the path of each key in a tree, and its node. Elements of arrays have none.
template<class Action>
void forEachKey(const TavRegistryProperty &root, Action action)
{
    struct Pending
    {
        const TavRegistryProperty *dictionary;
        QString path; // followed by "/"; empty at the top
    };
    std::vector<Pending> pending{{&root, {}}};
    while (!pending.empty()) {
        const Pending next = std::move(pending.back());
        pending.pop_back();
        for (TavRegistryProperty *const child : next.dictionary->children()) {
            const QString path = next.path + child->name();
            if (child->valueType() == Type::Dictionary)
                pending.push_back({child, path + u'/'});
            else
                action(path, *child);
        }
    }
}

} // namespace

bool CsvExport::write(const ExportedEntries &entries, const Columns &columns, QIODevice &device,
                      const ExportedEntries::Reach &reach)
{
    CsvExport writer(entries, columns, device);
    writer.addHead();
    entries.forEach(reach, [&](const ExportedEntries::Item &item) {
        if (!item.isRepeated)
            writer.addRow(*item.entry);
    });
    return writer.output_.finish();
}

QStringList CsvExport::keysOf(const ExportedEntries &entries, const ExportedEntries::Reach &reach)
{
    QSet<QString> keys;
    entries.forEach(reach, [&](const ExportedEntries::Item &item) {
        if (const PropertyRef tree =
                item.entry->copyOfProperties(TavRegistryProperty::staticPropertyClass()))
            forEachKey(*tree, [&](const QString &path, auto &) { keys.insert(path); });
    });
    QStringList sorted(keys.begin(), keys.end());
    sorted.sort();
    return sorted;
}

CsvExport::CsvExport(const ExportedEntries &entries, const Columns &columns, QIODevice &device)
    : entries_(entries)
    , columns_(columns)
    , output_(device)
{
    for (qsizetype i = 0; i < columns.keys.size(); ++i)
        columnsOfKeys_.insert(columns.keys[i], i);
}

void CsvExport::addHead()
{
    for (const auto fact : columns_.facts)
        addCell(EntryFactTexts::title(fact));
    for (const QString &key : columns_.keys)
        addCell(key);
    output_.add(QLatin1String("\r\n"));
    isAtStart_ = true;
}

void CsvExport::addRow(const TavRegistryEntry &entry)
{
    for (const auto fact : columns_.facts)
        addCell(EntryFactTexts::text(fact, entry, entries_.plane()));
    if (!columns_.keys.isEmpty()) {
        const PropertyRef tree =
            entry.copyOfProperties(TavPropertyOutlineItem::staticPropertyClass());
        const QStringList texts = tree ? cells(*tree) : QStringList(columns_.keys.size());
        for (const QString &text : texts)
            addCell(text);
    }
    output_.add(QLatin1String("\r\n"));
    isAtStart_ = true;
}

QStringList CsvExport::cells(const TavRegistryProperty &root) const
{
    QStringList texts(columns_.keys.size());
    forEachKey(root, [&](const QString &path, TavRegistryProperty &node) {
        const auto column = columnsOfKeys_.constFind(path);
        if (column != columnsOfKeys_.constEnd())
            texts[*column] = cell(static_cast<TavPropertyOutlineItem &>(node));
    });
    return texts;
}

QString CsvExport::cell(TavPropertyOutlineItem &node)
{
    if (!node.isCollection())
        return node.displayValue().text();
    QStringList elements;
    for (TavRegistryProperty *const child : node.children())
        elements.append(static_cast<TavPropertyOutlineItem &>(*child).displayValue().text());
    return elements.join(QLatin1String("; "));
}

void CsvExport::addCell(const QString &text)
{
    if (!std::exchange(isAtStart_, false))
        output_.add(',');
    output_.add(csvCell(text));
}
