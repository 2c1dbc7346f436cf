// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "display/comparison/ComparisonHtml.h"
#include "display/comparison/ComparisonJson.h"
#include "display/comparison/ComparisonSummary.h"
#include "display/comparison/ComparisonText.h"
#include "store/redaction/RedactedStore.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryTest.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>

namespace {
using namespace Qt::Literals::StringLiterals;
using namespace values;
using Detail = ExportedDifferences::Detail;

constexpr auto reportsNothing = [](double) {};

template<class Writer>
QByteArray written(const ExportedDifferences &differences)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    EXPECT_TRUE(Writer::write(differences, device, reportsNothing));
    return device.data();
}

// Without the lines that say what is compared.
std::string body(const ExportedDifferences &differences)
{
    const QByteArray text = written<ComparisonText>(differences);
    return text.mid(text.indexOf("\n\n") + 2).toStdString();
}

class ComparisonExportTest : public RegistryTest
{
protected:
    void SetUp() override
    {
        TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
        service_.setComputerName(u"before-host"_s);
    }
    void TearDown() override
    {
        comparison_.reset();
        before_.reset();
        RegistryTest::TearDown();
    }
    void captureBefore() { before_ = TavDataStore::initFromDxRegistry(service_); }
    const SnapshotComparison &compare()
    {
        capture();
        comparison_.emplace(*before_, *store_, SnapshotComparison::Options(), reportsNothing);
        return *comparison_;
    }
    ExportedDifferences differences(Detail detail = Detail::Differences,
                                    ExportedDifferences::Filter filter = {}) const
    {
        return {*comparison_, u"old.vandrel"_s, u"live registry"_s, std::move(filter), detail};
    }
    // One entry of each kind.
    void plantAllKinds()
    {
        tree_.plane("DxService", "Root\n"
                                 "  Host\n"
                                 "    card@1 : DxCard : DxService\n"
                                 "    disk\n"
                                 "    hub\n"
                                 "    old : DxDisk : DxService\n"
                                 "    stick\n");
        service_.setProperties(tree_["disk"], dictionary({{"serial", text("D-1")}}));
        service_.setProperties(tree_["stick"], dictionary({{"serial", text("S-1")}}));
        service_.setProperties(tree_["card@1"],
                               dictionary({{"driver", text("bus/pci/drivers/lan")},
                                           {"mtu", number(1500)},
                                           {"same", number(1)},
                                           {"flags", array({text("up"), text("run"), text("old")})},
                                           {"left", number(3)},
                                           {"gone", dictionary({{"a", text("x")}})},
                                           {"none", array({})},
                                           {"long", longText("one")}}));
        captureBefore();
        service_.setComputerName(u"after-host"_s);
        service_.setProperties(tree_["card@1"],
                               dictionary({{"driver", text("bus/pci/drivers/lan")},
                                           {"mtu", number(9000)},
                                           {"same", number(1)},
                                           {"flags", array({text("up"), text("stop")})},
                                           {"new", dictionary({{"b", text("y\n")}})},
                                           {"long", longText("two")}}));
        service_.unlink(tree_["Host"], tree_["disk"], "DxService");
        service_.link(tree_["hub"], tree_["disk"], "DxService");
        service_.setName(tree_["stick"], "pen");
        service_.remove(tree_["old"]);
        tree_.plane("DxService", "Root\n  Host\n    fresh : DxDisk : DxService");
        service_.setProperties(tree_["fresh"], dictionary({{"size", text("big")}}));
    }
    static RegistryValue longText(const char *word)
    {
        return RegistryValue::string(u"word "_s.repeated(100) + QString::fromLatin1(word) +
                                     u" word"_s.repeated(100));
    }

    PreferencesFolder preferences_;
    std::unique_ptr<TavDataStore> before_;
    std::optional<SnapshotComparison> comparison_;
};

TEST_F(ComparisonExportTest, TextHasEveryKindOfDifference)
{
    plantAllKinds();
    compare();
    EXPECT_EQ(body(differences()), R"(* DxService:/card@1  DxCard, driver lan
  - mtu = 0x5dc
  + mtu = 0x2328
  - flags[1] = run
  + flags[1] = stop
  - flags[2] = old
  + new (1 value)
  +   b = y\n
  - long = …ord word word word word one word word word word wor…
  + long = …ord word word word word two word word word word wor…
  - left = 0x3
  - gone (1 value)
  -   a = x
  - none (0 values)
+ DxService:/fresh  DxDisk
> DxService:/hub/disk  DxDevice
  - Path = DxService:/disk
  + Path = DxService:/hub/disk
- DxService:/old  DxDisk
~ DxService:/pen  DxDevice
  - Path = DxService:/stick
  + Path = DxService:/pen

1 added, 1 removed, 1 moved, 1 renamed, 1 changed
)");
    const QByteArray text = written<ComparisonText>(differences());
    EXPECT_TRUE(text.startsWith("--- old.vandrel, before-host")) << text.left(200).constData();
    EXPECT_TRUE(text.contains("\n+++ live registry, after-host"));
    EXPECT_TRUE(text.contains("\n!!! Different machines: before-host and after-host\n"));
}

TEST_F(ComparisonExportTest, FilterDetailAndNoDifference)
{
    plantAllKinds();
    compare();
    EXPECT_EQ(body(differences(Detail::Whole, {{DifferenceKind::Added}, {}})),
              "+ DxService:/fresh  DxDisk\n  + size = big\n\n1 added\n");
    EXPECT_EQ(written<ComparisonText>(differences(Detail::Counts)).toStdString(),
              "1 added, 1 removed, 1 moved, 1 renamed, 1 changed\n");
    const auto isCard = [](const EntryDifference &difference) {
        return difference.entry().DxcoreClass() == u"DxCard"_s;
    };
    EXPECT_EQ(differences(Detail::Counts, {{}, isCard}).counts().differences(), 1U);
    const SnapshotComparison same(*store_, *store_, {}, reportsNothing);
    EXPECT_EQ(body({same, u"a"_s, u"a"_s}), "No differences\n");
}

TEST_F(ComparisonExportTest, JsonHasTypedValues)
{
    plantAllKinds();
    compare();
    const auto document = QJsonDocument::fromJson(written<ComparisonJson>(differences())).object();
    EXPECT_EQ(document["counts"_L1]["changed"_L1].toInt(), 1);
    EXPECT_EQ(document["before"_L1]["host"_L1].toString(), u"before-host"_s);
    QHash<QString, QJsonObject> byKind;
    for (const auto &difference : document["differences"_L1].toArray())
        byKind.insert(difference["kind"_L1].toString(), difference.toObject());
    EXPECT_EQ(byKind.size(), 5);
    EXPECT_EQ(byKind[u"moved"_s]["before"_L1]["path"_L1].toString(), u"DxService:/disk"_s);
    EXPECT_FALSE(byKind[u"added"_s].contains("before"_L1));
    const QByteArray properties = QJsonDocument(byKind[u"changed"_s]["properties"_L1].toArray())
                                      .toJson(QJsonDocument::Compact);
    EXPECT_TRUE(properties.contains(R"({"after":{"$number":9000,"bytes":4},)"
                                    R"("before":{"$number":1500,"bytes":4},"property":"mtu"})"))
        << properties.constData();
    EXPECT_TRUE(properties.contains(R"({"after":{"b":"y\n"},"property":"new"})"));
    EXPECT_TRUE(properties.contains(R"({"before":{"a":"x"},"property":"gone"})"));
    EXPECT_TRUE(properties.contains(R"({"before":[],"property":"none"})"));
}

TEST_F(ComparisonExportTest, PageIsWellFormedAndLoadsNothingWhateverTheNames)
{
    const char *const hostile = "</code><script src=http://evil>&\"'\x1b\xe2\x80\xae";
    tree_.plane("DxService", "Root\n  Host\n    card");
    service_.setName(tree_["card"], hostile);
    service_.setProperties(
        tree_["card"], dictionary({{hostile, text(hostile)}, {"b", text("one <img src=a> x")}}));
    captureBefore();
    service_.setProperties(tree_["card"],
                           dictionary({{hostile, text("new")}, {"b", text("two <img src=a> x")}}));
    compare();
    const QByteArray page = written<ComparisonHtml>(differences());
    QXmlStreamReader reader(page);
    QString shown;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isCharacters())
            shown += reader.text();
        EXPECT_NE(reader.name(), u"script"_s);
        for (const char *const reference : {"src", "href", "srcset", "data", "action"})
            EXPECT_FALSE(reader.attributes().hasAttribute(QLatin1String(reference))) << reference;
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    EXPECT_TRUE(shown.contains(u"</code><script src=http://evil>&\"'\\x1b\\u202e"_s));
    EXPECT_TRUE(shown.contains(u"prefers-color-scheme: dark"_s)); // the style is there
    EXPECT_FALSE(page.contains("url(") || page.contains("@import"));
    EXPECT_TRUE(page.contains("<td><del>one</del> &lt;img src=a&gt; x</td>"
                              "<td><ins>two</ins> &lt;img src=a&gt; x</td>"));
}

// What differs, without the values.
QStringList listed(const SnapshotComparison &comparison)
{
    QStringList lines;
    for (const EntryDifference &difference : comparison.differences()) {
        if (difference.kind == DifferenceKind::Same)
            continue;
        QStringList line{QString::number(static_cast<int>(difference.kind)),
                         QString::number(difference.entry().entryTag())};
        const auto properties =
            comparison.propertyDifferences(difference, TavRegistryProperty::staticPropertyClass());
        for (const auto &change : properties.changes())
            line.append(change.path);
        lines.append(line.join(u' '));
    }
    lines.sort();
    return lines;
}

TEST_F(ComparisonExportTest, CopiesWithoutSerialNumbersHaveTheSameDifferences)
{
    PrivateRegistry::plant(service_, tree_);
    service_.setProperties(tree_["usb1"], dictionary({{"eeprom", data("01020304")},
                                                      {"raw", RegistryValue::data("SN-77812")}}));
    captureBefore();
    QByteArray edid = PrivateRegistry::edid();
    edid[12] = '\x12'; // its serial number
    service_.setProperties(tree_["monitor"], dictionary({{"edid", RegistryValue::data(edid)},
                                                         {"name", text("screen MON-99431")}}));
    service_.setProperties(tree_["usb1"], dictionary({{"eeprom", data("05060708")},
                                                      {"raw", RegistryValue::data("SN-88999")}}));
    service_.setProperties(tree_["disk"], dictionary({{"serial", text("SN-88999")},
                                                      {"wwid", text("naa.5000c500a1b2c3d4")},
                                                      {"note", text("was SN-77812")}}));
    const SnapshotComparison &original = compare();
    const auto copies = RedactedStore::copiesOf(*before_, *store_, reportsNothing);
    const SnapshotComparison redacted(copies.before->store(), copies.after->store(), {},
                                      reportsNothing);
    EXPECT_EQ(listed(redacted), listed(original));
    EXPECT_EQ(original.counts().changed, 3U);

    const ExportedDifferences exported(redacted, u"a"_s, u"b"_s, {}, Detail::Whole);
    const QByteArray text = written<ComparisonText>(exported);
    for (const QByteArray &bytes :
         {text, written<ComparisonJson>(exported), written<ComparisonHtml>(exported)}) {
        for (const std::string_view secret : PrivateRegistry::secrets)
            EXPECT_FALSE(bytes.toLower().contains(QByteArray(secret.data()).toLower())) << secret;
        EXPECT_FALSE(bytes.contains("SN-88999"));
    }
    EXPECT_TRUE(text.contains("  + note = was serial-1\n")) << text.constData();
    EXPECT_EQ(copies.before->text(u"ada-laptop.vandrel"_s), u"host-1.vandrel"_s);
}
} // namespace
