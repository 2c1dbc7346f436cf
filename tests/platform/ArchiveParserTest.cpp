// SPDX-License-Identifier: Apache-2.0
#include "tests/support/ArchiveSeal.h"

#include "platform/archive/ArchiveFormat.h"
#include "platform/archive/KeyedUnarchiver.h"

#include <QtEndian>
#include <gtest/gtest.h>

using L1 = QLatin1String;

namespace {
void expectRefused(const QByteArray &bytes)
{
    KeyedUnarchiver unarchiver(bytes);
    EXPECT_TRUE(unarchiver.error());
    EXPECT_EQ(unarchiver.objectCount(), 0U);
}

// An archive of the objects, given in hexadecimal.
QByteArray archiveOf(const QByteArray &objects, quint8 version = ArchiveFormat::version)
{
    QByteArray bytes("\xd9\xd9\xf7\x84\x6fvandrel-archive");
    bytes.append(static_cast<char>(version));
    return sealArchive(bytes + '\x9f' + QByteArray::fromHex(objects) + '\xff');
}

// An archive of one "Node" with this value for the key "value".
QByteArray archiveOfValue(const QByteArray &value)
{
    return archiveOf("9f 82 644e6f6465 6576616c7565" + value + "ff");
}

// A value of every kind.
QByteArray sample()
{
    return archiveOfValue("9f f5 6161 4178 c11805 d84041ff a1616220 00 ff");
}
} // namespace

TEST(ArchiveParser, RefusesTruncationAtEveryLength)
{
    const QByteArray bytes = sample();
    ASSERT_FALSE(KeyedUnarchiver(bytes).error());
    for (qsizetype length = 0; length < bytes.size(); ++length) {
        expectRefused(bytes.first(length));
        KeyedUnarchiver(sealArchive(bytes.first(length)));
    }
    expectRefused(bytes + '\0');
}

TEST(ArchiveParser, RefusesEveryFlippedByteAndSurvivesItWithANewDigest)
{
    const QByteArray bytes = sample();
    constexpr L1 classes[] = {L1("Node")};
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        for (int flip = 1; flip < 256; ++flip) {
            QByteArray flipped = bytes;
            flipped[i] = static_cast<char>(flipped[i] ^ flip);
            if (flip == 1 || flip == 0x80)
                expectRefused(flipped);
            KeyedUnarchiver unarchiver(sealArchive(unsealArchive(flipped)));
            for (quint32 object = 0; object < unarchiver.objectCount(); ++object)
                unarchiver.object({object}).decodeValue(L1("value"), ArchiveKinds(~0), classes);
        }
    }
}

TEST(ArchiveParser, RefusesInvalidArchives)
{
    const struct
    {
        const char *name;
        const char *reason;
        QByteArray bytes;
    } cases[] = {
        {"no objects", "an object is missing", archiveOf("")},
        {"unknown version", "version", archiveOf("820000", 2)},
        {"object without shape", "a list is missing", archiveOf("80")},
        {"shape that was not defined", "a shape is missing", archiveOf("820000")},
        {"object that is not an array", "a list is missing", archiveOf("01")},
        {"object that is a map", "a list is missing", archiveOf("a10000")},
        {"reference out of range", "an object is missing", archiveOfValue("01")},
        {"huge reference", "an object is missing", archiveOfValue("1bffffffffffffffff")},
        {"shared value out of range", "a shared value is missing", archiveOfValue("20")},
        {"lowest integer", "a shared value is missing", archiveOfValue("3bffffffffffffffff")},
        {"value missing", "a value is missing", archiveOfValue("")},
        {"value too many", "a list is damaged", archiveOfValue("f5f5")},
        {"float", "unknown kind", archiveOfValue("fb3ff8000000000000")},
        {"unknown tag", "unknown kind", archiveOfValue("d84401")},
        {"unknown simple value", "unknown kind", archiveOfValue("f863")},
        {"date that is not a number", "a date is missing", archiveOfValue("c1f5")},
        {"date out of range", "out of range", archiveOfValue("c1fb7ff0000000000000")},
        {"number of wrong width", "wrong width", archiveOfValue("d84243616263")},
        {"dictionary with a list as key", "not a string", archiveOfValue("a180f5")},
        {"dictionary with a key twice", "twice in a dictionary", archiveOfValue("a2616bf5616bf5")},
        {"dictionary with a key and a reference to it", "twice in a dictionary",
         archiveOfValue("a2616bf520f5")},
        {"lists one too deep", "nested too deeply",
         archiveOfValue(QByteArray("81").repeated(64) + "80")},
        {"class with a key twice", "a key occurs twice",
         archiveOf("9f 83 644e6f6465 616b 616b f5 f5 ff")},
        {"integer key without an integer", "an integer is missing",
         archiveOf("9f 82 644e6f6465 81616b f5 ff")},
    };
    for (const auto &[name, reason, bytes] : cases) {
        KeyedUnarchiver unarchiver(bytes);
        EXPECT_EQ(unarchiver.objectCount(), 0U) << name;
        ASSERT_TRUE(unarchiver.error()) << name;
        EXPECT_TRUE(unarchiver.error()->message.contains(L1(reason)))
            << name << ": " << qPrintable(unarchiver.error()->message);
    }
    ASSERT_FALSE(KeyedUnarchiver(archiveOfValue("00")).error());
}

TEST(ArchiveParser, ReadsEveryFormOfAValue)
{
    const auto valueOf = [](const QByteArray &form) {
        KeyedUnarchiver unarchiver(archiveOfValue(form));
        EXPECT_FALSE(unarchiver.error()) << form.constData();
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
        EXPECT_TRUE(valueOf(form) == value) << form.constData();
}

// Comparing the texts for each dictionary would take many minutes.
TEST(ArchiveParser, LooksAtLongKeysOnce)
{
    const QByteArray start = "7a003d0901" + QByteArray("6b").repeated(4'000'000); // a text
    constexpr int count = 300'000;
    KeyedUnarchiver unarchiver(archiveOfValue("9f" + start + "61" + start + "62" +
                                              QByteArray("a220f521f5").repeated(count) + "ff"));
    ASSERT_FALSE(unarchiver.error()) << qPrintable(unarchiver.error()->message);
    const auto value = unarchiver.object({0}).decodeValue(L1("value"), ArchiveKinds(~0));
    ASSERT_TRUE(value.get<ArchiveList>());
    EXPECT_EQ(value.get<ArchiveList>()->size(), count + 2U);
}

TEST(ArchiveParser, SpendsLittleOnFalseLengths)
{
    const QByteArray content = unsealArchive(archiveOfValue("")).chopped(2); // the two ends
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
