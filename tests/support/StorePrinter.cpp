// SPDX-License-Identifier: Apache-2.0
#include "tests/support/StorePrinter.h"

#include "tests/support/TreePrinter.h"

#include <QHash>
#include <map>

namespace {
using Places = QHash<const TavRegistryEntry *, quint64>;

// Null and empty are different.
QString quoted(const QString &text)
{
    return text.isNull() ? QStringLiteral("none") : u'"' + text + u'"';
}

QString dateText(const QDateTime &date)
{
    return date.isNull() ? QStringLiteral("never")
                         : date.toUTC().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz"));
}

QString placesText(const EntryList::Entries &entries, const Places &places)
{
    QString text;
    for (const TavRegistryEntry *entry : entries) {
        const auto place = places.find(entry);
        text += place == places.end() ? QStringLiteral(" foreign") : u' ' + QString::number(*place);
    }
    return text;
}

QString planeText(const TavRegistryEntry &entry, const QString &plane, const Places &places)
{
    return plane + QLatin1String(": ") + quoted(entry.nameInPlane(plane)) + QLatin1String(" at ") +
           quoted(entry.locationInPlane(plane)) + QLatin1String("; children") +
           placesText(entry.childrenInPlane(plane), places);
}

QString factsText(const TavRegistryEntry &entry)
{
    const bool flags[] = {entry.isRegistryRoot(), entry.conformsToDxService(), entry.isRegistered(),
                          entry.isMatched(), entry.isActive()};
    QString text = QStringLiteral("tag %1 busy %2 retain %3 state %4 flags ")
                       .arg(entry.entryTag())
                       .arg(entry.busyCount())
                       .arg(entry.kernelRetainCount())
                       .arg(entry.registryState());
    for (const bool flag : flags)
        text += flag ? u'1' : u'0';
    return text + u'\n' + quoted(entry.nameInPlane({})) + QLatin1String(" at ") +
           quoted(entry.locationInPlane({})) + QLatin1String(" bundle ") +
           quoted(entry.bundleID()) + u' ' + entry.kernelPath() + u'\n' +
           entry.inheritanceString() + u'\n';
}

QString datesText(const TavRegistryEntry &entry)
{
    return dateText(entry.dateDiscovered()) + QLatin1String(", ") +
           dateText(entry.dateLastUpdated()) + QLatin1String(", ") +
           dateText(entry.dateTerminated()) + u'\n';
}

std::string propertiesText(const TavRegistryEntry &entry)
{
    return entry.properties() ? TreePrinter::properties(*entry.properties()) : std::string();
}
} // namespace

std::string StorePrinter::print(const TavDataStore &store)
{
    Places places;
    for (const EntryRef &entry : store.registryEntries())
        places.insert(entry.get(), static_cast<quint64>(places.size()));
    const QStringList &planes = store.registryPlanes();
    QString text =
        QStringLiteral("host %1 arch %2 byte order %3 up to date %4\n")
            .arg(quoted(store.hostName()), quoted(store.archName()),
                 QString::number(store.byteOrder()), QString::number(store.isUpToDate())) +
        dateText(store.lastUpdateDate()) + u'\n' + planes.join(u' ') + u'\n';
    std::string whole = text.toStdString();
    for (const EntryRef &entry : store.registryEntries()) {
        text = QStringLiteral("\nentry %1").arg(places.value(entry.get())) +
               (entry->dataStore() == &store ? QString() : QStringLiteral(" of another store")) +
               u'\n' + factsText(*entry) + datesText(*entry);
        for (const QString &plane : planes)
            text += planeText(*entry, plane, places) + QLatin1String("; parents") +
                    placesText(entry->parentsInPlane(plane), places) + u'\n';
        whole += text.toStdString() + propertiesText(*entry);
    }
    return whole;
}

std::string StorePrinter::planes(const TavDataStore &store)
{
    std::string text;
    for (const QString &plane : store.registryPlanes())
        text += plane.toStdString() + '\n' + TreePrinter::plane(store, plane);
    return text;
}

std::string StorePrinter::registry(const TavDataStore &store)
{
    return registry(store, true);
}

std::string StorePrinter::structure(const TavDataStore &store)
{
    return registry(store, false);
}

std::string StorePrinter::registry(const TavDataStore &store, bool hasProperties)
{
    Places tags;
    for (const EntryRef &entry : store.registryEntries())
        tags.insert(entry.get(), entry->entryTag());
    std::map<quint64, std::string> entries;
    for (const EntryRef &entry : store.registryEntries()) {
        QString text = factsText(*entry);
        for (const QString &plane : store.registryPlanes())
            text += planeText(*entry, plane, tags) + u'\n';
        entries[entry->entryTag()] =
            text.toStdString() + (hasProperties ? propertiesText(*entry) : "");
    }
    std::string whole = planes(store);
    for (const auto &[tag, text] : entries)
        whole += text;
    return whole;
}
