// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "display/export/CsvExport.h"
#include "display/export/EscapedText.h"
#include "display/export/JsonExport.h"
#include "display/export/PlainTextExport.h"
#include "store/DataStoreDecoder.h"
#include "store/redaction/RedactedStore.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/SmallStore.h"

#include <QBuffer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
using namespace Qt::Literals::StringLiterals;
using Fact = EntryFactTexts::Fact;

constexpr auto noReport = [](double) {};

template<class Write>
QByteArray written(Write write)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    EXPECT_TRUE(write(device));
    return device.data();
}

QByteArray json(const ExportedEntries &entries)
{
    return written([&](QIODevice &device) { return JsonExport::write(entries, device, noReport); });
}

QByteArray outline(const ExportedEntries &entries)
{
    return written([&](QIODevice &device) {
        return PlainTextExport::write(entries, device, PlainTextExport::Head::Machine, noReport);
    });
}

QByteArray csv(const ExportedEntries &entries, const CsvExport::Columns &columns)
{
    return written(
        [&](QIODevice &device) { return CsvExport::write(entries, columns, device, noReport); });
}

// What docs/export-json.md says of values, read by another's JSON reader.
RegistryValue valueOf(const QJsonValue &json)
{
    if (json.isString())
        return RegistryValue::string(json.toString());
    if (json.isBool())
        return RegistryValue::boolean(json.toBool());
    if (json.isNull())
        return RegistryValue::null();
    RegistryValue::Elements elements;
    const QJsonObject object = json.toObject();
    for (const auto &element : json.isArray() ? json.toArray() : object["$set"_L1].toArray())
        elements.push_back(valueOf(element));
    if (json.isArray())
        return RegistryValue::array(std::move(elements));
    if (object.contains("$set"_L1))
        return RegistryValue::set(std::move(elements));
    if (object.contains("$data"_L1))
        return RegistryValue::data(
            QByteArray::fromBase64(object["$data"_L1].toString().toLatin1()));
    if (object.contains("$date"_L1))
        return RegistryValue::date(
            QDateTime::fromString(object["$date"_L1].toString(), Qt::ISODateWithMs));
    if (const QJsonValue number = object["$number"_L1]; !number.isUndefined()) {
        const bool isSigned = object["signed"_L1].toBool();
        const QString digits =
            number.isString() ? number.toString() : QString::number(number.toInteger());
        return RegistryValue::number(isSigned ? static_cast<quint64>(digits.toLongLong())
                                              : digits.toULongLong(),
                                     object["bytes"_L1].toInt(), isSigned);
    }
    RegistryValue::Members members;
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString key = member.key();
        members.push_back(
            {CompactString(key.startsWith(u'$') ? key.sliced(1) : key), valueOf(member.value())});
    }
    return RegistryValue::dictionary(std::move(members));
}

class ExportTest : public RegistryTest
{
protected:
    void SetUp() override
    {
        TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
        tree_.plane("DxService", "Root\n"
                                 "  Host\n"
                                 "    a\n"
                                 "      shared\n"
                                 "        below\n"
                                 "    b : DxDisk : DxService\n"
                                 "      shared\n");
        tree_.plane("DxBus", "Root\n  Host\n    bus");
    }
    ExportedEntries whole() const
    {
        return ExportedEntries::subtree(*store_, servicePlane, *store_->registryRoot());
    }
    PreferencesFolder preferences_;
};
} // namespace

using namespace values;

TEST_F(ExportTest, JsonKeepsEveryValueWithItsTypeAndWidth)
{
    const QString odd = QString::fromUtf8("\"\\\n\x1b é 😀") + QChar(0xD800);
    RegistryValue deep = number(1);
    for (int level = 0; level < 200; ++level)
        deep = level % 2 ? array({deep}) : dictionary({{"deeper", deep}});
    const RegistryValue table = dictionary(
        {{"$number", text("a key like a mark")},
         {"array", array({number(7, 1), negative(-1, 1), negative(-5), number(0xFFFF, 2)})},
         {"data", data("00ff10")},
         {"date", RegistryValue::date(QDateTime::fromMSecsSinceEpoch(1234567890123))},
         {"deep", deep},
         {"empty", array({dictionary({}), set({}), RegistryValue::string(QString())})},
         {"hexadecimal", RegistryValue::number(16, 1, false, RegistryValue::Notation::Hexadecimal)},
         {"large", array({number(0xFFFFFFFFFFFFFFFF, 8), negative(-9007199254740993, 8)})},
         {"odd", RegistryValue::string(odd)},
         {"set", set({text("x"), RegistryValue::boolean(true), RegistryValue::null()})}});
    service_.setProperties(tree_["a"], table);
    service_.setEntryID(tree_["a"], 0xFFFFFFFFFFFFFFFE);
    capture();
    QJsonParseError error;
    const QByteArray bytes = json(whole());
    const QJsonObject document = QJsonDocument::fromJson(bytes, &error).object();
    ASSERT_EQ(error.error, QJsonParseError::NoError) << error.errorString().toStdString();
    EXPECT_EQ(document["format"_L1], QJsonValue("vandrel-export"_L1));
    const QJsonArray entries = document["entries"_L1].toArray();
    ASSERT_EQ(entries.size(), 6); // the shared one once
    const QJsonObject a = entries[2].toObject();
    EXPECT_EQ(a["properties"_L1]["hexadecimal"_L1]["written"_L1].toString(), "hexadecimal"_L1);
    EXPECT_EQ(a["id"_L1].toString(), QStringLiteral("18446744073709551614"));
    EXPECT_EQ(entries[3]["parents"_L1]["DxService"_L1].toArray().first(), a["id"_L1]);
    EXPECT_EQ(entries[3]["parents"_L1]["DxService"_L1].toArray().size(), 2);
    EXPECT_EQ(valueOf(a["properties"_L1]), table);
}

TEST_F(ExportTest, TextShowsEachEntryOnceAndEscapesWhatControlsATerminal)
{
    service_.setProperties(
        tree_["shared"],
        dictionary({{"key\x1b[2J", text("two\nlines \xe2\x80\xae")},
                    {"table", dictionary({{"list", array({number(1), number(2)})}})}}));
    capture();
    const std::string shown = outline(whole()).toStdString();
    const auto count = [&](const std::string &part) {
        std::size_t found = 0;
        for (std::size_t at = 0; (at = shown.find(part, at)) != std::string::npos; ++at)
            ++found;
        return found;
    };
    EXPECT_EQ(count("      + shared\n"), 1U) << shown;
    EXPECT_EQ(count("      + shared (see above)\n"), 1U);
    EXPECT_EQ(count("+ below"), 1U);
    EXPECT_EQ(count("          key\\x1b[2J = two\\nlines \\u202e\n"
                    "          table (1 value)\n"
                    "            list (2 values)\n"
                    "              [0] = 0x1\n"
                    "              [1] = 0x2\n"),
              1U)
        << shown;
    EXPECT_EQ(count("Path: DxService:/"), 0U); // the outline shows it
    const auto single = ExportedEntries::single(*store_, servicePlane, entry("shared"));
    EXPECT_TRUE(outline(single).contains("\n  Path: DxService:/a/shared\n"));
}

TEST_F(ExportTest, CsvHasTheChosenColumnsAndNoFormulas)
{
    service_.setProperties(tree_["a"],
                           dictionary({{"text", text("=1+1")},
                                       {"number", text("-5")},
                                       {"list", array({text("x"), text("y,z")})},
                                       {"power", dictionary({{"state", text("on")}})}}));
    service_.setProperties(tree_["b"], dictionary({{"text", text("say \"hi\"\n")},
                                                   {"number", text("+cmd|x")},
                                                   {"odd,key", text(" spaced")}}));
    capture();
    const EntrySet some{&entry("b"), &entry("a"), &entry("bus")};
    const auto found = ExportedEntries::found(*store_, servicePlane, some);
    EXPECT_EQ(CsvExport::keysOf(found, noReport),
              list({"list", "number", "odd,key", "power/state", "text"}));
    const CsvExport::Columns columns{{Fact::Path, Fact::Class},
                                     list({"text", "number", "list", "power/state", "odd,key"})};
    EXPECT_EQ(csv(found, columns).toStdString(),
              "Path,Class,text,number,list,power/state,\"odd,key\"\r\n"
              "DxService:/a,DxDevice,'=1+1,-5,\"x; y,z\",on,\r\n"
              "DxService:/b,DxDisk,\"say \"\"hi\"\"\\n\",'+cmd|x,,,\" spaced\"\r\n"
              "DxBus:/bus,DxDevice,,,,,\r\n");
}

TEST_F(ExportTest, NoFormatHasPrivateValuesOfARedactedCopy)
{
    PrivateRegistry::plant(service_, tree_);
    capture();
    const RedactedStore redacted(*store_, noReport);
    const ExportedEntries entries = whole().in(redacted);
    EXPECT_EQ(entries.items().size(), whole().items().size());
    const CsvExport::Columns columns{{Fact::Path}, CsvExport::keysOf(entries, noReport)};
    for (const QByteArray &bytes : {json(entries), outline(entries), csv(entries, columns)}) {
        EXPECT_GT(bytes.size(), 1000);
        for (const std::string_view secret : PrivateRegistry::secrets)
            EXPECT_EQ(bytes.toLower().indexOf(QByteArray(secret.data()).toLower()), -1) << secret;
    }
    const QByteArray original = outline(whole()); // the test can fail
    EXPECT_TRUE(original.contains("SN-77812") && original.contains("ada-laptop"));
}

// Properties with marks of changes are no table.
TEST(ExportOfTrees, WritesWhatIsNoTable)
{
    const PreferencesFolder preferences;
    ArchiveSketch sketch = SmallStore::current();
    sketch.objects[SmallStore::List].set(QLatin1String("registryState"), qint64(2));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store && store->registryRoot()->table().isNone());
    const auto root = ExportedEntries::single(*store, {}, *store->registryRoot());
    EXPECT_TRUE(
        json(root).contains(R"("properties":{"text":"value","list":[{"$number":7,"bytes":4}]})"));
    EXPECT_TRUE(outline(root).contains("    text = value\n    list (1 value)\n      [0] = 0x7\n"));
}

TEST(ExportDevices, AFullOneIsReported)
{
    class Full : public QIODevice
    {
        qint64 readData(char *, qint64) override { return -1; }
        qint64 writeData(const char *, qint64) override { return -1; }
    } device;
    device.open(QIODevice::WriteOnly);
    const auto store = DataStoreDecoder::decode(SmallStore::current().bytes());
    const auto root = ExportedEntries::single(*store, {}, *store->registryRoot());
    EXPECT_FALSE(JsonExport::write(root, device, noReport));
}
