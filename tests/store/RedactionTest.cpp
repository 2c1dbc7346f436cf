// SPDX-License-Identifier: Apache-2.0
#include "LinuxFixture.h"
#include "store/DataStoreDecoder.h"
#include "store/redaction/EdidRedaction.h"
#include "store/redaction/RedactedStore.h"
#include "store/redaction/TextReplacer.h"
#include "tests/support/EncodedStore.h"
#include "tests/support/PrivateRegistry.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/SmallStore.h"
#include "tests/support/StoreLinks.h"

namespace {
constexpr auto noReport = [](double) {};

class RedactionTest : public RegistryTest
{
protected:
    void SetUp() override
    {
        PrivateRegistry::plant(service_, tree_);
        capture();
    }
    QString shown(const char *label, const char *key) const
    {
        const TavRegistryEntry &copy = *redacted_->counterpart(entry(label));
        return CapturedTree::value(&copy, QString::fromLatin1(key)).toString();
    }
    void redact() { redacted_ = std::make_unique<RedactedStore>(*store_, noReport); }
    std::unique_ptr<RedactedStore> redacted_;
};

void expectNone(const QByteArray &bytes, std::string_view secret)
{
    const QByteArray text(secret.data(), static_cast<qsizetype>(secret.size()));
    EXPECT_FALSE(bytes.toLower().contains(text.toLower())) << secret;
}
} // namespace

TEST_F(RedactionTest, LeavesNoPrivateValueInASnapshotAndTheStoreAsItWas)
{
    const QByteArray before = encoded(*store_);
    redact();
    EXPECT_TRUE(encoded(*store_) == before);
    const QByteArray after = encoded(redacted_->store());
    for (const std::string_view secret : PrivateRegistry::secrets) {
        EXPECT_EQ(after.toLower().indexOf(QByteArray(secret.data()).toLower()), -1) << secret;
    }
    for (const char *bytes : {"5000c500a1b2c3d4", "3e10aabbccd0", "78563412"})
        EXPECT_FALSE(after.contains(QByteArray::fromHex(bytes))) << bytes;
    const auto read = DataStoreDecoder::decode(after);
    ASSERT_TRUE(read);
    expectLinksAgree(*read);
}

TEST_F(RedactionTest, TheSameValueBecomesTheSameTokenEverywhere)
{
    redact();
    EXPECT_EQ(redacted_->store().hostName(), QStringLiteral("host-1"));
    EXPECT_EQ(shown("Host", "root"),
              QStringLiteral("UUID=00000000-0000-4000-8000-000000000001 of host-1"));
    EXPECT_EQ(shown("Host", "chassis_asset_tag"), QStringLiteral("asset-1"));
    EXPECT_EQ(shown("disk", "wwid"), shown("disk", "sas_address"));
    EXPECT_EQ(shown("eth0", "address"), QStringLiteral("02:00:00:00:00:01"));
    EXPECT_EQ(shown("eth0", "device@02:00:00:00:00:01"), shown("eth0", "address"));
    EXPECT_EQ(redacted_->counterpart(entry("child"))->nameInPlane(servicePlane),
              QStringLiteral("enx020000000001"));
    const TavRegistryEntry &eth0 = *redacted_->counterpart(entry("eth0"));
    EXPECT_EQ(CapturedTree::value(&eth0, u"local-mac-address").toData(),
              QByteArray::fromHex("020000000001"));
    const auto *const udev = eth0.properties()->childWithName(QStringLiteral("udev"));
    EXPECT_EQ(udev->childAtIndex(0)->value(), values::text("enx020000000001"));
    EXPECT_EQ(udev->childAtIndex(1)->value(), values::text("02-00-00-00-00-01"));
    EXPECT_EQ(shown("monitor", "name"), QStringLiteral("screen serial-6"));
}

TEST_F(RedactionTest, KeepsWhatIdentifiesNothing)
{
    redact();
    EXPECT_EQ(shown("Host", "product_serial"), QStringLiteral("To be filled by O.E.M."));
    EXPECT_EQ(shown("disk", "firmware_version"), QStringLiteral("10.20.30.40"));
    EXPECT_EQ(shown("disk", "model"), QStringLiteral("Fast Disk"));
    EXPECT_EQ(shown("eth0", "broadcast"), QStringLiteral("ff:ff:ff:ff:ff:ff"));
    EXPECT_EQ(shown("usb1", "serial"), QStringLiteral("usb1")); // the name of an entry
    EXPECT_EQ(shown("usb1", "quoted_serial"), QStringLiteral("\"\""));
    const TavRegistryEntry &usb = *redacted_->counterpart(entry("usb1"));
    EXPECT_EQ(usb.table().member(u"DxUnreadAttributes").member(u"serial"),
              values::text("not read"));
    EXPECT_EQ(CapturedTree::value(&usb, u"count"), values::number(3));
    // Values that did not change share the memory of the original.
    const RegistryValue &own = entry("usb1").table();
    EXPECT_TRUE(own.member(u"count").meansTheSameAs(usb.table().member(u"count")));
}

TEST_F(RedactionTest, CleansMonitorsAndKeepsTheirChecksum)
{
    const QByteArray cleaned = EdidRedaction::cleaned(PrivateRegistry::edid());
    quint8 sum = 0;
    for (const char byte : cleaned)
        sum = static_cast<quint8>(sum + static_cast<quint8>(byte));
    EXPECT_EQ(sum, 0);
    EXPECT_EQ(cleaned.mid(12, 4), QByteArray(4, '\0'));
    EXPECT_TRUE(cleaned.contains("Wide Screen"));
    EXPECT_EQ(cleaned.mid(59, 13), QByteArray("\n            "));
    // A broken one stays as it is, and nothing is read beyond its end.
    for (const qsizetype size : {0, 1, 127, 129, 200}) {
        QByteArray broken = PrivateRegistry::edid() + QByteArray(128, '\x02');
        broken.truncate(size);
        EXPECT_EQ(EdidRedaction::cleaned(broken).size(), size);
    }
    const QByteArray noise(256, '\x70');
    EXPECT_EQ(EdidRedaction::cleaned(noise), noise);
}

// Properties with marks of changes are no table, and are copied node by node.
TEST(RedactionOfTrees, FindsKeysAndElements)
{
    ArchiveSketch sketch = SmallStore::current();
    sketch.objects[SmallStore::List]
        .set(QLatin1String("name"), ArchiveValue(QStringLiteral("serial")))
        .set(QLatin1String("registryState"), qint64(2));
    sketch.objects[SmallStore::Element].set(QLatin1String("value"),
                                            ArchiveValue(QStringLiteral("SN-77812")));
    sketch.objects[SmallStore::Text].set(QLatin1String("value"),
                                         ArchiveValue(QStringLiteral("of SN-77812")));
    const auto store = DataStoreDecoder::decode(sketch.bytes());
    ASSERT_TRUE(store && store->registryRoot()->table().isNone());
    const RedactedStore redacted(*store, noReport);
    const TavRegistryProperty &table = *redacted.store().registryRoot()->properties();
    EXPECT_EQ(table.childAtIndex(0)->value(), values::text("of serial-1"));
    EXPECT_EQ(table.childAtIndex(1)->childAtIndex(0)->value(), values::text("serial-1"));
    EXPECT_EQ(table.childAtIndex(1)->registryState(), RegistryStateChanged);
}

TEST(RedactionOfFixtures, LeavesNoPrivateValue)
{
    const CapturedTree tree = CapturedTree::fixture("synthetic");
    const RedactedStore redacted(*tree.store, noReport);
    const QByteArray bytes = encoded(redacted.store());
    for (const std::string_view secret :
         {"DW000123", "02:00:00:00:00:10", "LVM-r3cRdTfqQpYm0u5vZ1", "SPINNER_4T_000123"})
        expectNone(bytes, secret);
    expectNone(bytes, tree.store->hostName().toStdString());
    const auto address = [&](const char *path) {
        return CapturedTree::value(redacted.counterpart(*tree.at(path)), u"address");
    };
    EXPECT_EQ(address("DxNetwork:/eth0/bond0"), values::text("02:00:00:00:00:01"));
    EXPECT_EQ(address("DxNetwork:/eth0"), address("DxNetwork:/eth0/bond0"));
}

TEST(TextReplacer, TakesTheLongestAndShortOnesOnlyAsWords)
{
    TextReplacer replacer;
    replacer.add(QStringLiteral("ABCD1234"), QStringLiteral("<long>"), false);
    replacer.add(QStringLiteral("abcd123456"), QStringLiteral("<longer>"), false);
    replacer.add(QStringLiteral("ab12"), QStringLiteral("<word>"), true);
    replacer.add(QStringLiteral("abc"), QStringLiteral("<too short>"), false);
    const std::pair<const char *, const char *> cases[] = {
        {"xabcd1234567", "x<longer>7"},
        {"xABCD12345", "x<long>5"},
        {"ab12 xab12 ab12x _AB12_", "<word> xab12 ab12x _<word>_"},
        {"abc", "abc"},
        {"", ""},
    };
    for (const auto &[text, expected] : cases)
        EXPECT_EQ(replacer.apply(QString::fromLatin1(text)), QString::fromLatin1(expected));
}
