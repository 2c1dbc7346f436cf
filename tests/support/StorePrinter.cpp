#include "tests/support/StorePrinter.h"

#include "tests/support/TreePrinter.h"

#include <QHash>

namespace {
using Places = QHash<const TavRegistryEntry *, std::size_t>;

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

QString planesText(const TavRegistryEntry &entry, const QStringList &planes, const Places &places)
{
    QString text;
    for (const QString &plane : planes) {
        text += plane + QLatin1String(": ") + quoted(entry.nameInPlane(plane)) +
                QLatin1String(" at ") + quoted(entry.locationInPlane(plane)) +
                QLatin1String("; children") + placesText(entry.childrenInPlane(plane), places) +
                QLatin1String("; parents") + placesText(entry.parentsInPlane(plane), places) +
                u'\n';
    }
    return text;
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
           quoted(entry.bundleID()) + u'\n' + entry.inheritanceString() + u'\n' +
           dateText(entry.dateDiscovered()) + QLatin1String(", ") +
           dateText(entry.dateLastUpdated()) + QLatin1String(", ") +
           dateText(entry.dateTerminated()) + u'\n';
}
} // namespace

std::string StorePrinter::print(const TavDataStore &store)
{
    Places places;
    for (const EntryRef &entry : store.registryEntries())
        places.insert(entry.get(), static_cast<std::size_t>(places.size()));
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
               u'\n' + factsText(*entry) + planesText(*entry, planes, places);
        whole += text.toStdString();
        if (TavRegistryProperty *properties = entry->properties())
            whole += TreePrinter::properties(*properties);
    }
    return whole;
}
