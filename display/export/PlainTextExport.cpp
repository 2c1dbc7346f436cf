// SPDX-License-Identifier: Apache-2.0
#include "display/export/PlainTextExport.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/export/EntryFactTexts.h"
#include "display/export/EscapedText.h"
#include "display/export/PropertyLines.h"
#include "store/TavDataStore.h"

namespace {
constexpr quint32 maxLevel = 60; // what is deeper is indented no more
constexpr qsizetype indentation = 2;
} // namespace

bool PlainTextExport::write(const ExportedEntries &entries, QIODevice &device, Head head,
                            const ExportedEntries::Reach &reach)
{
    PlainTextExport writer(entries, device);
    if (head == Head::Machine)
        writer.addHead();
    entries.forEach(reach, [&](const ExportedEntries::Item &item) { writer.addEntry(item); });
    return writer.output_.finish();
}

PlainTextExport::PlainTextExport(const ExportedEntries &entries, QIODevice &device)
    : entries_(entries)
    , output_(device)
{}

void PlainTextExport::addHead()
{
    const TavDataStore &store = entries_.store();
    addLine(0, tr("Machine: %1 (%2)").arg(store.hostName(), store.archName()));
    addLine(0, tr("Read: %1").arg(store.lastUpdateDate().toLocalTime().toString(Qt::ISODate)));
    addLine(0, tr("Plane: %1").arg(entries_.plane()));
    output_.add('\n');
}

void PlainTextExport::addEntry(const ExportedEntries::Item &item)
{
    const QString name =
        EntryFactTexts::text(EntryFactTexts::Fact::Name, *item.entry, entries_.plane());
    if (item.isRepeated)
        return addLine(item.depth, tr("+ %1 (see above)").arg(name));
    addLine(item.depth, u'+' + (u' ' + name));
    addFacts(item);
    const PropertyRef tree =
        item.entry->copyOfProperties(TavPropertyOutlineItem::staticPropertyClass());
    if (tree && tree->numberOfChildren() > 0) {
        addLine(item.depth + 1, tr("Properties:"));
        addProperties(*tree, item.depth + 2);
    }
}

// The outline shows the paths of entries that are below others.
void PlainTextExport::addFacts(const ExportedEntries::Item &item)
{
    using enum EntryFactTexts::Fact;
    for (const auto fact :
         {Path, Inheritance, Bundle, Service, State, BusyCount, RetainCount, Terminated}) {
        if (fact == Path && item.depth > 0)
            continue;
        const QString text = EntryFactTexts::text(fact, *item.entry, entries_.plane());
        if (!text.isEmpty())
            addLine(item.depth + 1, EntryFactTexts::title(fact) + QLatin1String(": ") + text);
    }
}

void PlainTextExport::addProperties(const TavRegistryProperty &root, quint32 level)
{
    PropertyLines::forEach(root, [&](const PropertyLines::Line &line) {
        const QString value = line.property.displayValue().text();
        addLine(level + line.level, line.property.isCollection()
                                        ? tr("%1 (%2)").arg(line.name, value)
                                        : line.name + QLatin1String(" = ") + value);
    });
}

void PlainTextExport::addLine(quint32 level, const QString &text)
{
    output_.addSpaces(indentation * std::min(level, maxLevel));
    output_.add(escapedText(text));
    output_.add('\n');
}
