// Bytes as kernels gave them, against what the same kernels said of them in words.
#include "DisplayFixture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RecordedTrees.h"

#include <QDirIterator>
#include <QRegularExpression>
#include <QtEndian>
#include <gtest/gtest.h>

namespace {
class RecordedBytesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (RecordedTrees::names().isEmpty())
            GTEST_SKIP() << qUtf8Printable(RecordedTrees::missingMessage());
    }

    // Folders of all the trees that hold a file of the name.
    static QStringList foldersWith(const QString &fileName)
    {
        QStringList folders;
        for (const QString &tree : RecordedTrees::names()) {
            QDirIterator files(RecordedTrees::folder(tree) + QStringLiteral("/sys/devices"),
                               {fileName}, QDir::Files, QDirIterator::Subdirectories);
            while (files.hasNext()) {
                files.next();
                folders << files.fileInfo().path();
            }
        }
        return folders;
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QString line(const QString &path) { return QString::fromUtf8(read(path)).trimmed(); }
    static QStringList units(const QByteArray &bytes, const char *format)
    {
        const LoneItem item(RegistryValue::data(bytes));
        const QString text = item->formatDataValueWithOptions(formatOf(format)).text();
        return text.mid(1, text.size() - 2).split(u' ');
    }
};

TEST_F(RecordedBytesTest, PciConfigurationSpace)
{
    int devices = 0;
    for (const QString &folder : foldersWith(QStringLiteral("config"))) {
        const QByteArray bytes = read(folder + QStringLiteral("/config")).first(64);
        const QString vendor = line(folder + QStringLiteral("/vendor"));
        const QString device = line(folder + QStringLiteral("/device"));
        const QString classCode = line(folder + QStringLiteral("/class"));
        const QStringList halves = units(bytes, "2xhu");
        EXPECT_EQ(halves.mid(0, 2), (QStringList{vendor, device}));
        const QStringList words = units(bytes, "4xlu");
        EXPECT_EQ(words[0], device + vendor.mid(2));
        // The revision lies below the three bytes of the class.
        EXPECT_EQ(words[2].first(8), classCode);
        EXPECT_EQ(units(bytes, "1dhu")[8], QString::number(static_cast<quint8>(bytes[8])));
        EXPECT_EQ(units(bytes, "2xbu")[0].mid(2), vendor.mid(4) + vendor.mid(2, 2));
        const LoneItem item(RegistryValue::data(bytes));
        EXPECT_TRUE(item->autoformattedDataValue().text().startsWith(u'<' + vendor.mid(4) + u' ' +
                                                                     vendor.mid(2, 2) + u' '));
        ++devices;
    }
    EXPECT_GT(devices, 10);
}

TEST_F(RecordedBytesTest, UsbDescriptors)
{
    int devices = 0;
    for (const QString &folder : foldersWith(QStringLiteral("descriptors"))) {
        const QByteArray bytes = read(folder + QStringLiteral("/descriptors"));
        ASSERT_GE(bytes.size(), 18);
        const QStringList halves = units(bytes.first(18), "2xlu");
        const QString prefix = QStringLiteral("0x");
        EXPECT_EQ(halves[4], prefix + line(folder + QStringLiteral("/idVendor")));
        EXPECT_EQ(halves[5], prefix + line(folder + QStringLiteral("/idProduct")));
        EXPECT_EQ(halves[6], prefix + line(folder + QStringLiteral("/bcdDevice")));
        // A device's descriptor starts with its length and its kind; text it is not.
        const LoneItem item(RegistryValue::data(bytes));
        EXPECT_TRUE(item->autoformattedDataValue().text().startsWith(QStringLiteral("<12 01 ")));
        EXPECT_EQ(units(bytes, "1bhu")[0], QStringLiteral("0b00010010"));
        ++devices;
    }
    EXPECT_GT(devices, 5);
}

// The recorder kept no firmware files, but the kernel quotes them in "uevent".
class DeviceTreeNode
{
public:
    explicit DeviceTreeNode(const QString &uevent)
    {
        static const QRegularExpression unitAddress(QStringLiteral("OF_FULLNAME=.*@([0-9a-f]{8})$"),
                                                    QRegularExpression::MultilineOption);
        static const QRegularExpression compatibleLine(QStringLiteral("^OF_COMPATIBLE_\\d+=(.*)$"),
                                                       QRegularExpression::MultilineOption);
        address = unitAddress.match(uevent).captured(1);
        for (auto it = compatibleLine.globalMatch(uevent); it.hasNext();)
            compatible << it.next().captured(1);
    }
    // As the node's files hold them: big-endian cells, and texts that each end in a NUL.
    QByteArray cell() const { return QByteArray::fromHex(address.toLatin1()); }
    QByteArray stringList() const { return compatible.join(QChar()).toLatin1() + '\0'; }

    QString address;
    QStringList compatible;
};

TEST_F(RecordedBytesTest, DeviceTreeCellsAndStringLists)
{
    int cells = 0;
    int lists = 0;
    for (const QString &folder : foldersWith(QStringLiteral("uevent"))) {
        const DeviceTreeNode node(line(folder + QStringLiteral("/uevent")));
        if (!node.address.isEmpty()) {
            const quint32 address = node.address.toUInt(nullptr, 16);
            EXPECT_EQ(units(node.cell(), "4xbu"), QStringList(QStringLiteral("0x") + node.address));
            EXPECT_EQ(units(node.cell(), "4dbu"), QStringList(QString::number(address)));
            EXPECT_EQ(units(node.cell(), "4dhu"),
                      QStringList(QString::number(qbswap(address)))); // as no one wants it
            ++cells;
        }
        if (node.compatible.size() > 1) {
            const LoneItem item(RegistryValue::data(node.stringList()));
            EXPECT_EQ(
                item->autoformattedDataValue().text(),
                QStringLiteral("<\"%1\">").arg(node.compatible.join(QStringLiteral("\", \""))));
            EXPECT_EQ(item->numStringsInDataValue(), node.compatible.size());
            const QString characters = item->formatDataValueWithOptions(formatOf("s1h")).text();
            EXPECT_TRUE(characters.startsWith(
                QStringLiteral("<\"%1.%2").arg(node.compatible[0][0]).arg(node.compatible[0][1])));
            EXPECT_TRUE(characters.endsWith(QStringLiteral(".\\0\">")));
            ++lists;
        }
    }
    EXPECT_GT(cells, 5);
    EXPECT_GT(lists, 5);
}
} // namespace
