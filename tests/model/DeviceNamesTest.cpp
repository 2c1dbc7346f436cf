// SPDX-License-Identifier: Apache-2.0
#include "model/DeviceModalias.h"
#include "model/linux/HardwareDatabase.h"
#include "model/linux/IdsFileNames.h"
#include "model/linux/UdevHardwareNames.h"
#include "tests/support/LogCapture.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScriptedNames.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace values;

namespace {
constexpr auto pciIds = "# A list\n"
                        "\n"
                        "1234  Example Networks\n"
                        "\t0001  LN-210 Gigabit Adapter\n"
                        "\t\t1234 0002  A board with it\n"
                        "\tzzzz  no number\n"
                        "\t0003 one space\n"
                        "1234  Another vendor of that number\n"
                        "ffff  \n"
                        "AT 0100  Type of something else\n"
                        "\t0009  Not a device of the vendor above\n"
                        "C 02  Network controller\n"
                        "\t00  Ethernet controller\n"
                        "\t\t01  An interface\n"
                        "C zz  no class\n"
                        "8086  Last Vendor";
const QString adapter = QStringLiteral("pci:v00001234d00000001sv00000000sd00000000bc02sc00i00");

class IdsFiles : public testing::Test
{
protected:
    void write(const char *name, const QByteArray &content) const
    {
        QFile file(folder_.filePath(QLatin1String(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QStringList folders() const { return {QStringLiteral("/nowhere"), folder_.path()}; }

    QTemporaryDir folder_;
};

std::string textOf(const DeviceName &name)
{
    return (name.vendor() + u'|' + name.model() + u'|' + name.className()).toStdString();
}
} // namespace

TEST_F(IdsFiles, NameWhatTheyListAndNothingElse)
{
    write("pci.ids", pciIds);
    write("usb.ids", "4321  Vendor of Mice\n\t00ff  Mouse\nC 03  Human Interface Device\n");
    IdsFileNames names(folders());
    const auto named = [&](const char *modalias) {
        return textOf(names.nameOf(QString::fromLatin1(modalias)));
    };
    EXPECT_EQ(textOf(names.nameOf(adapter)),
              "Example Networks|LN-210 Gigabit Adapter|Ethernet controller");
    EXPECT_EQ(named("pci:v00001234d00000009sv00000000sd00000000bc02sc99i00"),
              "Example Networks||Network controller");
    EXPECT_EQ(named("pci:v00008086d00000001sv00000000sd00000000bc99sc00i00"), "Last Vendor||");
    EXPECT_EQ(named("usb:v4321p00FFd0100dc03dsc00dp00"),
              "Vendor of Mice|Mouse|Human Interface Device");
    for (const char *other : {"", "pci:", "pci:v1234", "usb:v4321", "acpi:PNP0C0A:", "pci:vZZZZ"})
        EXPECT_EQ(named(other), "||") << other;
}

TEST_F(IdsFiles, ThatAreBadHaveNoNamesAndAreReportedOnce)
{
    write("pci.ids", QByteArray("\x00\xff\t\t\n\t\n  \t0001  x\nC \n", 20));
    IdsFileNames names(folders());
    const LogCapture log;
    EXPECT_TRUE(names.nameOf(adapter).isEmpty());
    EXPECT_TRUE(names.nameOf(adapter).isEmpty());
    EXPECT_TRUE(names.nameOf(QStringLiteral("usb:v4321p00FFd0100dc03dsc00")).isEmpty()); // no file
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_TRUE(log.messages().first().contains(QLatin1String("pci.ids")));
}

TEST_F(IdsFiles, FillInWhatTheBetterDatabaseLacks)
{
    class Better : public DeviceNameSource
    {
        DeviceName nameOf(const QString &) override
        {
            return {QStringLiteral("Better model"), {}, {}};
        }
    };
    write("pci.ids", pciIds);
    std::vector<std::unique_ptr<DeviceNameSource>> sources;
    sources.push_back(std::make_unique<Better>());
    sources.push_back(std::make_unique<IdsFileNames>(folders()));
    HardwareDatabase database(std::move(sources));
    const DeviceName name = database.nameOf(adapter);
    EXPECT_EQ(name.title().toStdString(), "Example Networks Better model");
    EXPECT_EQ(name.description().toStdString(),
              "Example Networks Better model — Ethernet controller");
    EXPECT_EQ(name.shortTitle().toStdString(), "Better model");
}

TEST(DeviceName, IsMadeOfWhatIsKnownAndBounded)
{
    const auto vendor = QStringLiteral("Vendor");
    EXPECT_TRUE(DeviceName().isEmpty());
    EXPECT_TRUE(DeviceName(QStringLiteral("  "), {}, {}).isEmpty());
    EXPECT_EQ(DeviceName({}, vendor, {}).description(), vendor);
    EXPECT_TRUE(DeviceName({}, vendor, {}).shortTitle().isNull());
    EXPECT_EQ(DeviceName({}, {}, QStringLiteral("Hub")).description().toStdString(), "Hub");
    const DeviceName longName(QString(100'000, u'x'), vendor, {});
    EXPECT_EQ(longName.model().size(), DeviceName::maxSize);
}

TEST(DeviceModalias, ComesFromThePropertiesThatTheKernelGives)
{
    const auto hub = [](const RegistryValue &deviceClass) {
        return dictionary({{"idVendor", number(0x1d6b, 2)},
                           {"idProduct", number(2, 2)},
                           {"bcdDevice", number(0x0601, 2)},
                           {"bDeviceClass", deviceClass},
                           {"bDeviceSubClass", text("00")},
                           {"bDeviceProtocol", text("e0")}});
    };
    const struct
    {
        RegistryValue properties;
        const char *modalias;
    } rows[] = {
        {dictionary({{"modalias", text("pci:v1")}, {"idVendor", number(1, 2)}}), "pci:v1"},
        {dictionary({{"uevent", dictionary({{"MODALIAS", text("sdio:c00")}})}}), "sdio:c00"},
        {hub(text("09")), "usb:v1D6Bp0002d0601dc09dsc00dpE0"},
        // "10" is hexadecimal here, though it looks like a decimal number.
        {hub(number(10)), "usb:v1D6Bp0002d0601dc10dsc00dpE0"},
        {dictionary({{"idVendor", text("1d6b")}, {"idProduct", number(2, 2)}}), ""},
        {dictionary({{"id", text("IBM0057")}, {"subsystem", text("bus/pnp")}}), "acpi:IBM0057:"},
        {dictionary({{"id", text("IBM0057")}, {"subsystem", text("class/sound")}}), ""},
        {dictionary({{"modalias", number(7)}}), ""},
        {{}, ""},
    };
    for (const auto &[properties, modalias] : rows) {
        EXPECT_EQ(DeviceModalias::of(properties).toStdString(), modalias);
        EXPECT_EQ(DeviceModalias::of(DeviceModalias::propertiesOf(
                      *build(properties.isNone() ? RegistryValue::dictionary({}) : properties))),
                  DeviceModalias::of(properties));
    }
}

TEST(DeviceNames, AskTheDatabaseOnceForEachKindOfDevice)
{
    const auto record = std::make_shared<ScriptedNames::Record>();
    const auto names = ScriptedNames::create(
        {{QStringLiteral("a"), DeviceName(QStringLiteral("Model"), {}, {})}}, record);
    EXPECT_EQ(names->nameOf(QStringLiteral("a")), names->nameOf(QStringLiteral("a")));
    EXPECT_EQ(names->nameOf(QStringLiteral("a"))->title().toStdString(), "Model");
    for (const QString &unknown :
         {QStringLiteral("b"), QStringLiteral("b"), QString(), QString(1'000'000, u'*')})
        EXPECT_TRUE(names->nameOf(unknown)->isEmpty());
    EXPECT_EQ(record->asked, (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
}

TEST(UdevHardwareNames, KnowTheClassesOfDevices)
{
    const bool isInstalled = QFile::exists(QStringLiteral("/usr/lib/udev/hwdb.bin")) ||
                             QFile::exists(QStringLiteral("/etc/udev/hwdb.bin"));
    if (!isInstalled)
        GTEST_SKIP() << "this machine has no hardware database";
    const QString anyEthernet =
        QStringLiteral("pci:v0000FFFEd00000001sv00000000sd00000000bc02sc00i00");
    const DeviceName name = UdevHardwareNames().nameOf(anyEthernet);
    EXPECT_EQ(name.className().toStdString(), "Ethernet controller");
    EXPECT_TRUE(name.model().isNull());
    const QString hub = QStringLiteral("usb:v1D6Bp0002d0601dc09dsc00dp01ic09isc00ip00in00");
    EXPECT_FALSE(UdevHardwareNames().nameOf(hub).model().isNull());
    EXPECT_EQ(UdevHardwareNames().nameOf(hub).className().toStdString(), "Hub");
    EXPECT_TRUE(UdevHardwareNames().nameOf(QStringLiteral("pci:")).isEmpty());
}
