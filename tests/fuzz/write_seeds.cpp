// SPDX-License-Identifier: Apache-2.0
// Writes the binary seeds of the fuzzers into the given folder.

#include "platform/archive/KeyedArchiver.h"
#include "tests/support/ArchiveSeal.h"
#include "tests/support/SmallStore.h"

#include <QFile>
#include <cstdio>

namespace {
using L1 = QLatin1String;

bool write(const QString &file, const ArchiveSketch &sketch)
{
    QFile device(file);
    const QByteArray content = unsealArchive(sketch.bytes()); // a fuzzer puts the digest on
    return device.open(QIODevice::WriteOnly) && device.write(content) == content.size();
}

// Values of every kind, shared ones, and circular references.
ArchiveSketch values()
{
    const QDateTime date = QDateTime::fromMSecsSinceEpoch(1234567890123, Qt::UTC);
    const ArchiveDictionary all{
        {QStringLiteral("null"), ArchiveNull()},
        {QStringLiteral("true"), true},
        {QStringLiteral("number"), ArchiveNumber{7, 4, false}},
        {QStringLiteral("signed"), ArchiveNumber{0xff, 1, true}},
        {QStringLiteral("list"), ArchiveList{QStringLiteral("text"), date, ArchiveReference{0}}},
        {QStringLiteral("data"), QByteArray("bytes")},
        {QStringLiteral("name"), ArchiveValue()},
    };
    const auto node = [](qint64 number, quint32 next, const ArchiveValue &value) {
        return ArchiveSketch::Object{QStringLiteral("Node"),
                                     {
                                         {L1("number"), number},
                                         {L1("name"), QStringLiteral("name")},
                                         {L1("next"), ArchiveReference{next}},
                                         {L1("value"), value},
                                     }};
    };
    return {{node(-1, 1, all), node(1, 2, date), node(1 << 20, 0, ArchiveList{all, true})}};
}

ArchiveSketch versionOne()
{
    ArchiveSketch sketch = SmallStore::old();
    sketch.objects[SmallStore::Root].set(
        L1("properties"),
        ArchiveValue(QByteArray("<plist><dict><key>a</key><integer>1</integer></dict></plist>")));
    sketch.objects[SmallStore::Child].set(L1("terminationAcknowledged"), ArchiveValue(true));
    return sketch;
}
} // namespace

int main(int argc, char **argv)
{
    const QString folder = QString::fromLocal8Bit(argc == 2 ? argv[1] : ".");
    const bool isWritten = write(folder + L1("/archive/values"), values()) &&
                           write(folder + L1("/store/current"), SmallStore::current()) &&
                           write(folder + L1("/store/version-1"), versionOne());
    if (!isWritten)
        std::fprintf(stderr, "write_seeds: cannot write in %s\n", qUtf8Printable(folder));
    return isWritten ? 0 : 1;
}
