// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/KeyedArchiver.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/support/SmallStack.h"

#include <QBuffer>
#include <gtest/gtest.h>

using L1 = QLatin1String;

namespace {
constexpr L1 nodeClasses[] = {L1("Node")};
constexpr ArchiveKinds anyKind(~0);

struct Node
{
    QString name;
    QDateTime date;
    std::vector<Node *> links;
};

QByteArray archiveOf(const Node &root)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    KeyedArchiver archiver(device);
    ArchiveClass<Node> nodes{};
    nodes = archiver.addClass<Node>(QStringLiteral("Node"), [&](const Node &node, auto &a) {
        a.encodeString(L1("name"), node.name);
        a.encodeDate(L1("date"), node.date);
        std::vector<ArchiveReference> links;
        for (const Node *link : node.links)
            links.push_back(a.reference(*link, nodes));
        a.encodeReferences(L1("links"), links);
    });
    EXPECT_TRUE(archiver.encodeRoot(root, nodes)) << qPrintable(archiver.errorString());
    return device.data();
}

std::vector<ArchiveReference> linksOf(KeyedUnarchiver &unarchiver, ArchiveReference node)
{
    return unarchiver.object(node).decodeReferences(L1("links"), nodeClasses).value();
}

// An archive of one object, or the error.
template<class Encoder>
std::pair<QByteArray, QString> archiveOfOne(Encoder encoder)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    KeyedArchiver archiver(device);
    const int object = 0;
    const auto type =
        archiver.addClass<int>(QStringLiteral("Node"), [&](int, KeyedArchiver &a) { encoder(a); });
    const bool isWritten = archiver.encodeRoot(object, type);
    EXPECT_EQ(isWritten, archiver.errorString().isNull());
    return {device.data(), archiver.errorString()};
}

QByteArray archiveOfValue(const ArchiveValue &value)
{
    return archiveOfOne([&](KeyedArchiver &a) { a.encodeValue(L1("value"), value); }).first;
}

} // namespace

TEST(KeyedArchive, KeepsValuesOfEveryKind)
{
    const QDateTime date(QDate(2038, 1, 19), QTime(3, 14, 7, 123), Qt::UTC);
    const ArchiveValue nested = ArchiveDictionary{
        {QStringLiteral("b"), ArchiveList{ArchiveList{}, date, QStringLiteral("b")}},
        {QStringLiteral("a"), ArchiveDictionary{{QStringLiteral("b"), true}}},
        {QString(QLatin1String("")), date}};
    const ArchiveValue values[] = {ArchiveValue(),
                                   ArchiveNull(),
                                   true,
                                   false,
                                   QString(QLatin1String("")),
                                   QStringLiteral("Grüße \U0001F600"),
                                   QByteArray(""),
                                   QByteArray("\0\xff", 2),
                                   date,
                                   QDateTime::fromMSecsSinceEpoch(-1500, Qt::UTC),
                                   QDateTime::fromMSecsSinceEpoch(7000, Qt::UTC),
                                   ArchiveNumber{0xff, 1, false},
                                   ArchiveNumber{0x8000, 2, true},
                                   ArchiveNumber{1, 4, false},
                                   ArchiveNumber{~quint64(0), 8, true},
                                   ArchiveReference{0},
                                   ArchiveList(),
                                   ArchiveDictionary(),
                                   nested};
    for (const ArchiveValue &value : values) {
        KeyedUnarchiver unarchiver(archiveOfValue(value));
        ASSERT_FALSE(unarchiver.error()) << qPrintable(unarchiver.error()->message);
        const auto read =
            unarchiver.object(unarchiver.root).decodeValue(L1("value"), anyKind, nodeClasses);
        EXPECT_TRUE(read == value) << value.index();
    }
}

TEST(KeyedArchive, KeepsIntegersAndRefusesThoseThatDoNotFit)
{
    KeyedUnarchiver unarchiver(
        archiveOfOne([](KeyedArchiver &a) {
            a.encodeInteger(L1("lowest"), std::numeric_limits<qint64>::min());
            a.encodeInteger(L1("highest"), std::numeric_limits<quint64>::max());
            a.encodeInteger(L1("int32"), std::numeric_limits<qint32>::min());
            a.encodeInteger(L1("uint32"), std::numeric_limits<quint32>::max());
        }).first);
    const ObjectDecoder object = unarchiver.object(unarchiver.root);
    EXPECT_EQ(object.decodeInteger<quint32>(L1("uint32")), 0xffffffffU);
    EXPECT_EQ(object.decodeInteger<qint64>(L1("lowest")), std::numeric_limits<qint64>::min());
    EXPECT_EQ(object.decodeInteger<qint32>(L1("int32")), std::numeric_limits<qint32>::min());
    EXPECT_EQ(object.decodeInteger<quint64>(L1("highest")), ~quint64(0));
    EXPECT_EQ(object.decodeInteger<qint32>(L1("missing")), 0);
    EXPECT_FALSE(unarchiver.error());
    EXPECT_EQ(object.decodeInteger<qint32>(L1("uint32")), 0);
    EXPECT_TRUE(unarchiver.error());
}

TEST(KeyedArchive, TakesNoTextForAReference)
{
    KeyedUnarchiver unarchiver(
        archiveOfValue(ArchiveList{QStringLiteral("x"), ArchiveReference{0}}));
    const ObjectDecoder object = unarchiver.object(unarchiver.root);
    EXPECT_FALSE(object.decodeReferences(L1("value"), nodeClasses));
    EXPECT_TRUE(unarchiver.error());
}

TEST(KeyedArchive, KeepsSharingAndCycles)
{
    const QDateTime date(QDate(2020, 2, 29), QTime(12, 0), Qt::UTC);
    Node root{QStringLiteral("shared name"), date, {}};
    Node left{QStringLiteral("shared name"), date, {}};
    Node right{QStringLiteral("right"), {}, {&left, &root, &left}};
    root.links = {&left, &right, &root};
    const QByteArray bytes = archiveOf(root);
    EXPECT_EQ(bytes.count("shared name"), 1);

    KeyedUnarchiver unarchiver(bytes);
    EXPECT_EQ(unarchiver.objectCount(), 3U);
    const auto ofRoot = linksOf(unarchiver, unarchiver.root);
    const auto ofRight = linksOf(unarchiver, ofRoot.at(1));
    EXPECT_EQ(ofRoot, (std::vector{ofRoot[0], ofRoot[1], unarchiver.root}));
    EXPECT_EQ(ofRight, (std::vector{ofRoot[0], unarchiver.root, ofRoot[0]}));
    const ObjectDecoder readLeft = unarchiver.object(ofRoot[0]);
    EXPECT_EQ(readLeft.decodeString(L1("name")), left.name);
    EXPECT_EQ(readLeft.decodeDate(L1("date")), date);
    EXPECT_TRUE(unarchiver.object(ofRoot[1]).decodeDate(L1("date")).isNull());
}

TEST(KeyedArchive, NeedsNoStackForAChainOfAMillionObjects)
{
    onSmallStack([] {
        std::vector<Node> chain(1'000'000);
        for (std::size_t i = 0; i + 1 < chain.size(); ++i)
            chain[i].links = {&chain[i + 1]};
        KeyedUnarchiver unarchiver(archiveOf(chain[0]));
        ASSERT_EQ(unarchiver.objectCount(), chain.size());
        ArchiveReference last = unarchiver.root;
        for (std::size_t i = 0; i + 1 < chain.size(); ++i)
            last = linksOf(unarchiver, last).at(0);
        EXPECT_TRUE(linksOf(unarchiver, last).empty());
    });
}

TEST(KeyedArchive, ReportsWhatCannotBeWritten)
{
    const auto failure = [](auto encoder) { return archiveOfOne(encoder).second; };
    EXPECT_TRUE(failure([](KeyedArchiver &a) {
                    a.encodeInteger(L1("k"), 1);
                    a.encodeString(L1("k"), {});
                }).contains(L1("twice")));
    const auto nested = [](ArchiveValue value) {
        for (int i = 0; i < 64; ++i)
            value = ArchiveList{value};
        return value;
    };
    EXPECT_FALSE(KeyedUnarchiver(archiveOfValue(nested(true))).error());
    EXPECT_TRUE(failure([&](KeyedArchiver &a) {
                    a.encodeValue(L1("k"), nested(ArchiveDictionary()));
                }).contains(L1("nested")));
}
