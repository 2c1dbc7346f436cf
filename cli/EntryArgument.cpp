// SPDX-License-Identifier: Apache-2.0
#include "cli/EntryArgument.h"

#include "cli/CommandError.h"
#include "cli/NearestText.h"
#include "store/TavDataStore.h"

EntryArgument::EntryArgument(TavDataStore &store, const QString &text)
{
    const bool isPlane = store.registryPlanes().contains(text);
    const bool isInPlane = isPlane || store.registryPlanes().contains(text.section(u':', 0, 0));
    if (isInPlane && !text.isEmpty()) {
        const auto matches = store.entriesMatchingRegistryPath(text);
        entries_.assign(matches.entries.begin(), matches.entries.end());
        plane_ = isPlane ? text : text.section(u':', 0, 0);
        orderEntries();
    } else if (!text.isEmpty()) {
        entries_ = store.findReadingWhole(text);
    }
    if (!entries_.empty())
        return;
    if (text.isEmpty())
        throw CommandError{tr("An empty path is no path of an entry")};
    const QString similar = isInPlane ? nearestPath(store, text) : nearest(store, text);
    throw CommandError{similar.isNull()
                           ? tr("There is no entry %1").arg(text)
                           : tr("There is no entry %1. The nearest is %2").arg(text, similar),
                       ExitCode::Failed};
}

void EntryArgument::orderEntries()
{
    std::sort(entries_.begin(), entries_.end(),
              [](const auto *a, const auto *b) { return a->entryTag() < b->entryTag(); });
}

QString EntryArgument::nearest(const TavDataStore &store, const QString &text)
{
    QStringList names = store.registryPlanes();
    const bool isPath = text.startsWith(u'/');
    for (const EntryRef &entry : store.registryEntries()) {
        if (isPath) {
            names.append(entry->kernelPath());
            names.append(EntryLocator::deviceNode(*entry));
        } else {
            names.append(EntryLocator::kernelName(*entry));
        }
    }
    return NearestText::among(names, text);
}

// The longest part of the path that exists, and below it the name that is most like the next one.
QString EntryArgument::nearestPath(const TavDataStore &store, const QString &path)
{
    const QString plane = path.section(u':', 0, 0);
    QString known = plane + QStringLiteral(":/");
    TavRegistryEntry *entry = nullptr;
    for (const QString &name : path.section(u':', 1).split(u'/', Qt::SkipEmptyParts)) {
        if (!entry) {
            const auto top = store.entriesMatchingRegistryPath(known).entries;
            if (top.isEmpty())
                return {};
            entry = *top.begin();
        }
        QStringList names;
        TavRegistryEntry *next = nullptr;
        for (TavRegistryEntry *const child : entry->childrenInPlane(plane)) {
            names.append(child->nameAtLocationInPlane(plane));
            if (names.constLast() == name || child->nameInPlane(plane) == name)
                next = child;
        }
        const QString separator = known.endsWith(u'/') ? QString() : QStringLiteral("/");
        if (!next) {
            const QString similar = NearestText::among(names, name);
            return similar.isNull() ? known : known + separator + similar;
        }
        known += separator + next->nameAtLocationInPlane(plane);
        entry = next;
    }
    return known;
}
