#include "tests/support/ArchiveSeal.h"

#include "platform/ArchiveFormat.h"
#include "platform/KeyedArchiver.h"
#include "platform/KeyedUnarchiver.h"

#include <QBuffer>
#include <QtEndian>
#include <gtest/gtest.h>

using L1 = QLatin1String;
using Writer = QCborStreamWriter;

namespace {

// A small archive with a bit of everything.
QByteArray sample()
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    KeyedArchiver archiver(device);
    const int numbers[] = {0, 1, 2};
    ArchiveClass<int> type{};
    type = archiver.addClass<int>(QStringLiteral("Node"), [&](int n, KeyedArchiver &a) {
        a.encodeInteger(L1("number"), n);
        a.encodeBoolean(L1("flag"), n == 1);
        a.encodeString(L1("name"), QStringLiteral("name"));
        a.encodeDate(L1("date"), QDateTime::fromMSecsSinceEpoch(1234567890123, Qt::UTC));
        a.encodeReference(L1("next"), a.reference(numbers[(n + 1) % 3], type));
        a.encodeValue(L1("value"),
                      ArchiveDictionary{{QStringLiteral("a"), ArchiveNumber{7, 4, true}},
                                        {QStringLiteral("b"), ArchiveList{QByteArray("xyz")}}});
    });
    EXPECT_TRUE(archiver.encodeRoot(numbers[0], type));
    return device.data();
}

// Decodes whatever can be decoded.
void decodeAll(KeyedUnarchiver &unarchiver)
{
    static constexpr L1 classes[] = {L1("Node")};
    for (quint32 i = 0; i < unarchiver.objectCount(); ++i) {
        const ArchivedObject object = unarchiver.object({i});
        object.decodeInteger<qint32>(L1("number"));
        object.decodeBoolean(L1("flag"));
        object.decodeString(L1("name"));
        object.decodeDate(L1("date"));
        object.decodeReference(L1("next"), classes);
        object.decodeReferences(L1("value"), classes);
        object.decodeValue(L1("value"), ArchiveKinds(~0), classes);
    }
}

void expectRefused(const QByteArray &bytes)
{
    KeyedUnarchiver unarchiver(bytes);
    EXPECT_TRUE(unarchiver.error());
    EXPECT_EQ(unarchiver.objectCount(), 0U);
}

// The archive whose objects are written by the given function, sealed.
template<class WriteObjects>
QByteArray archiveOf(WriteObjects writeObjects, int version = ArchiveFormat::version)
{
    QByteArray bytes;
    Writer writer(&bytes);
    writer.append(QCborKnownTags::Signature);
    writer.startArray(4);
    writer.append(ArchiveFormat::name);
    writer.append(version);
    writer.startArray();
    writeObjects(writer);
    writer.endArray();
    return sealArchive(bytes);
}

// An archive of one object, whose class has one key with the value written by the function.
template<class WriteValue>
QByteArray archiveOfValue(WriteValue writeValue)
{
    return archiveOf([&](Writer &w) {
        w.startArray();
        w.startArray(2);
        w.append(L1("Node"));
        w.append(L1("value"));
        w.endArray();
        writeValue(w);
        w.endArray();
    });
}

} // namespace

TEST(ArchiveReader, RefusesTruncationAtEveryLength)
{
    const QByteArray bytes = sample();
    ASSERT_FALSE(KeyedUnarchiver(bytes).error());
    for (qsizetype length = 0; length < bytes.size(); ++length) {
        expectRefused(bytes.first(length));
        KeyedUnarchiver(sealArchive(bytes.first(length)));
    }
    expectRefused(bytes + '\0');
}

TEST(ArchiveReader, RefusesEveryFlippedByteAndSurvivesItWhenSealedAnew)
{
    const QByteArray bytes = sample();
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        for (int flip = 1; flip < 256; ++flip) {
            QByteArray flipped = bytes;
            flipped[i] = static_cast<char>(flipped[i] ^ flip);
            if (flip == 1 || flip == 0x80)
                expectRefused(flipped);
            KeyedUnarchiver unarchiver(sealArchive(unsealArchive(flipped)));
            decodeAll(unarchiver);
        }
    }
}

TEST(ArchiveReader, RefusesWhatIsNoSoundArchive)
{
    const auto array = [](int first, int second) {
        return [=](Writer &w) {
            w.startArray(2);
            w.append(first);
            w.append(second);
            w.endArray();
        };
    };
    struct Case
    {
        const char *name;
        const char *reason;
        QByteArray bytes;
    };
    const Case cases[] = {
        {"no objects", "an object is missing", archiveOf([](Writer &) {})},
        {"unknown version", "version", archiveOf(array(0, 0), 2)},
        {"object without shape", "a list is missing", archiveOf([](Writer &w) {
             w.startArray();
             w.endArray();
         })},
        {"shape that was not defined", "a shape is missing", archiveOf(array(0, 0))},
        {"object that is no array", "a list is missing", archiveOf([](Writer &w) { w.append(1); })},
        {"object that is a map", "a list is missing", archiveOf([](Writer &w) {
             w.startMap(1);
             w.append(0);
             w.append(0);
             w.endMap();
         })},
        {"reference out of range", "an object is missing",
         archiveOfValue([](Writer &w) { w.append(1); })},
        {"huge reference", "an object is missing",
         archiveOfValue([](Writer &w) { w.append(~quint64(0)); })},
        {"shared value out of range", "a shared value is missing",
         archiveOfValue([](Writer &w) { w.append(-1); })},
        {"lowest integer", "a shared value is missing",
         archiveOfValue([](Writer &w) { w.append(QCborNegativeInteger(0)); })},
        {"value missing", "a value is missing", archiveOfValue([](Writer &) {})},
        {"value too many", "a list is damaged", archiveOfValue([](Writer &w) {
             w.append(true);
             w.append(true);
         })},
        {"float", "unknown kind", archiveOfValue([](Writer &w) { w.append(1.5); })},
        {"unknown tag", "unknown kind", archiveOfValue([](Writer &w) {
             w.append(QCborTag(68));
             w.append(1);
         })},
        {"unknown simple value", "unknown kind",
         archiveOfValue([](Writer &w) { w.append(QCborSimpleType(99)); })},
        {"date that is no number", "a date is missing", archiveOfValue([](Writer &w) {
             w.append(QCborTag(1));
             w.append(true);
         })},
        {"date out of range", "out of range", archiveOfValue([](Writer &w) {
             w.append(QCborTag(1));
             w.append(qInf());
         })},
        {"number of wrong width", "wrong width", archiveOfValue([](Writer &w) {
             w.append(QCborTag(66));
             w.append(QByteArray("abc"));
         })},
        {"dictionary with a list as key", "no string", archiveOfValue([](Writer &w) {
             w.startMap(1);
             w.startArray(0);
             w.endArray();
             w.append(true);
             w.endMap();
         })},
        {"dictionary with a key twice", "twice in a dictionary", archiveOfValue([](Writer &w) {
             w.startMap(2);
             w.append(L1("k"));
             w.append(true);
             w.append(L1("k"));
             w.append(true);
             w.endMap();
         })},
        {"dictionary with a key and a reference to it", "twice in a dictionary",
         archiveOfValue([](Writer &w) {
             w.startMap(2);
             w.append(L1("k"));
             w.append(true);
             w.append(-1);
             w.append(true);
             w.endMap();
         })},
        {"class with a key twice", "a key occurs twice", archiveOf([](Writer &w) {
             w.startArray();
             w.startArray(3);
             w.append(L1("Node"));
             w.append(L1("k"));
             w.append(L1("k"));
             w.endArray();
             w.append(true);
             w.append(true);
             w.endArray();
         })},
        {"integer key without an integer", "an integer is missing", archiveOf([](Writer &w) {
             w.startArray();
             w.startArray(2);
             w.append(L1("Node"));
             w.startArray(1);
             w.append(L1("k"));
             w.endArray();
             w.endArray();
             w.append(true);
             w.endArray();
         })},
    };
    for (const auto &[name, reason, bytes] : cases) {
        KeyedUnarchiver unarchiver(bytes);
        EXPECT_EQ(unarchiver.objectCount(), 0U) << name;
        ASSERT_TRUE(unarchiver.error()) << name;
        EXPECT_TRUE(unarchiver.error()->message.contains(L1(reason)))
            << name << ": " << qPrintable(unarchiver.error()->message);
    }
    ASSERT_FALSE(KeyedUnarchiver(archiveOfValue([](Writer &w) { w.append(0); })).error());
}

TEST(ArchiveReader, ReadsEveryFormOfAValue)
{
    const QByteArray head = unsealArchive(archiveOfValue([](Writer &) {})).chopped(2);
    const auto valueOf = [&](const QByteArray &form) {
        KeyedUnarchiver unarchiver(sealArchive(head + form + "\xff\xff"));
        EXPECT_FALSE(unarchiver.error()) << form.toHex().constData();
        return unarchiver.error()
                   ? ArchiveValue()
                   : unarchiver.object({0}).decodeValue(L1("value"), ArchiveKinds(~0));
    };
    const auto date = [](qint64 milliseconds) -> ArchiveValue {
        return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC);
    };
    const std::pair<QByteArray, ArchiveValue> cases[] = {
        {"c11805", date(5000)},
        {"c124", date(-5000)},
        {"c1f93e00", date(1500)},             // half
        {"c1fabfc00000", date(-1500)},        // single
        {"c1fb3ff8000000000000", date(1500)}, // double
        {"7f626162ff", QStringLiteral("ab")},
        {"7f61616061626062c3a4ff", QStringLiteral("abä")},
        {"7fff", QString(L1(""))},
        {"5f41014040420202ff", QByteArray("\1\2\2")},
        {"5fff", QByteArray("")},
        {"9ff4f5ff", ArchiveList{false, true}},
        {"8180", ArchiveList{ArchiveList()}},
        {"bf6161f57f6162fff4ff",
         ArchiveDictionary{{QStringLiteral("a"), true}, {QStringLiteral("b"), false}}},
        {"d84041ff", ArchiveNumber{255, 1, false}},
        {"d8495f41ff4100ff", ArchiveNumber{0xff00, 2, true}},
    };
    for (const auto &[form, value] : cases)
        EXPECT_TRUE(valueOf(QByteArray::fromHex(form)) == value) << form.constData();
}

// Comparing the texts for each dictionary would take many minutes.
TEST(ArchiveReader, LooksAtLongKeysOnce)
{
    const QString start(4'000'000, u'k');
    constexpr int count = 300'000;
    KeyedUnarchiver unarchiver(archiveOfValue([&](Writer &w) {
        w.startArray();
        w.append(start + u'a');
        w.append(start + u'b');
        for (int i = 0; i < count; ++i) {
            w.startMap(2);
            w.append(-1);
            w.append(true);
            w.append(-2);
            w.append(true);
            w.endMap();
        }
        w.endArray();
    }));
    ASSERT_FALSE(unarchiver.error()) << qPrintable(unarchiver.error()->message);
    const auto value = unarchiver.object({0}).decodeValue(L1("value"), ArchiveKinds(~0));
    ASSERT_TRUE(value.get<ArchiveList>());
    EXPECT_EQ(value.get<ArchiveList>()->size(), count + 2U);
}

TEST(ArchiveReader, SpendsLittleOnClaimsThatTheBytesDoNotBear)
{
    const QByteArray head = archiveOfValue([](Writer &) {});
    const QByteArray content = unsealArchive(head).chopped(2); // the ends of object and list
    for (const quint64 count : {0x7fffffffffffffffULL, 0x10000000000ULL, 0x60000000ULL}) {
        char bytes[sizeof count];
        qToBigEndian(count, bytes);
        for (const char type : {'\x5b', '\x7b', '\x9b', '\xbb'}) // data, text, list, dictionary
            expectRefused(content + type + QByteArray(bytes, sizeof bytes));
    }
    expectRefused(content + QByteArray(1'000'000, '\x81')); // lists within lists
    expectRefused(content + QByteArray(1'000'000, '\xc1')); // tags within tags
    expectRefused(QByteArray(1'000'000, '\x9f'));
}
