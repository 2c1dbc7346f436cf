// SPDX-License-Identifier: Apache-2.0
// What rows and facts show beside the names of entries: the names of devices, and icons.
#include "ExplorerFixture.h"
#include "explorer/EntryIcons.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/FactField.h"
#include "platform/widgets/OutlineRowDelegate.h"
#include "platform/widgets/ReadableColor.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/ScriptedNames.h"

#include <QHeaderView>
#include <QListView>
#include <QTableView>

using namespace values;

namespace {
constexpr int detailRole = OutlineRowDelegate::DetailRole;

class RowDetails : public ExplorerFixture
{
protected:
    RowDetails()
    {
        prefer("FindOptions", 1);
        prefer("ShowDeviceNames", QStringLiteral("yes"));
        prefer("ShowIcons", QStringLiteral("yes"));
        registry_.plane("DxService", R"(
            Root
              Host
                eth@0 : DxNetDeviceExample : DxNetDevice : DxClassDevice : DxService
                fan@1)");
        service_.setProperties(registry_["eth@0"], dictionary({{"modalias", text("pci:1")}}));
        service_.setDeviceNames(ScriptedNames::create(
            {{QStringLiteral("pci:1"),
              DeviceName(QStringLiteral("LN-210"), QStringLiteral("Example"), {})}},
            record_));
    }
    void openNamed()
    {
        open();
        ASSERT_TRUE(waitFor([this] { return entry("eth@0")->deviceName() != nullptr; }));
    }
    std::string shown(int role) const
    {
        return row({"Root", "Host", "eth@0"}).data(role).toString().toStdString();
    }
    QImage painted(Labels labels) const
    {
        tree().header()->resizeSection(0, tree().viewport()->width());
        return tree().viewport()->grab(tree().visualRect(row(labels))).toImage();
    }

    std::shared_ptr<ScriptedNames::Record> record_ = std::make_shared<ScriptedNames::Record>();
};
} // namespace

TEST_F(RowDetails, ShowTheDeviceBehindTheName)
{
    openNamed();
    EXPECT_EQ(shown(Qt::DisplayRole), "eth@0");
    EXPECT_EQ(shown(detailRole), "LN-210");
    EXPECT_EQ(shown(Qt::AccessibleTextRole), "eth@0, LN-210");
    EXPECT_TRUE(row({"Root", "Host", "fan@1"}).data(detailRole).isNull());
    find("ln-210");
    EXPECT_EQ(selected(), "DxService:/eth@0");
    const auto &results = *outlet<QTableView>("findTableView");
    ASSERT_EQ(results.model()->rowCount(), 1);
    EXPECT_EQ(results.model()->index(0, 1).data(detailRole).toString().toStdString(), "LN-210");
    controller_->browserView();
    const auto &browser = *outlet<ColumnBrowser>("registryBrowser");
    EXPECT_EQ(browser.list(2)->model()->index(0, 0).data(detailRole).toString().toStdString(),
              "LN-210");
}

TEST_F(RowDetails, AddAFactOnlyWhereThereIsOne)
{
    openNamed();
    const auto &field = *outlet<FactField>("objectDeviceField");
    select({"Root", "Host", "eth@0"});
    EXPECT_TRUE(field.isVisible());
    EXPECT_EQ(field.text().toStdString(), "Example LN-210");
    select({"Root", "Host", "fan@1"});
    EXPECT_FALSE(field.isVisible());
    selectNothing();
    EXPECT_FALSE(field.isVisible());
}

TEST_F(RowDetails, FollowNamesThatAreFoundLaterAndNewDevices)
{
    open();
    select({"Root", "Host", "eth@0"});
    EXPECT_TRUE(record_->asked.isEmpty()); // the window comes first
    ASSERT_TRUE(waitFor([this] { return outlet<FactField>("objectDeviceField")->isVisible(); }));
    registry_.plane("DxService", "Root\n  Host\n    usb@9");
    service_.setProperties(registry_["usb@9"], dictionary({{"modalias", text("pci:1")}}));
    update();
    ASSERT_TRUE(waitFor([this] {
        return !row({"Root", "Host", "usb@9"}).data(detailRole).isNull();
    }));
    EXPECT_FALSE(document_->isDocumentEdited());
}

TEST_F(RowDetails, AreSwitchedInAllWindowsAndRemembered)
{
    openNamed();
    controller_->newDocumentWindow();
    EXPECT_TRUE(action("toggleDeviceNamesAction").isChecked());
    const QImage both = painted({"Root", "Host", "eth@0"});
    action("toggleDeviceNamesAction").trigger();
    EXPECT_FALSE(action("toggleDeviceNamesAction").isChecked());
    EXPECT_EQ(shown(detailRole), "");
    EXPECT_EQ(shown(Qt::AccessibleTextRole), "eth@0");
    EXPECT_FALSE(controller(1).showsDeviceNames());
    const QImage iconOnly = painted({"Root", "Host", "eth@0"});
    EXPECT_NE(iconOnly, both);
    action("toggleIconsAction").trigger();
    EXPECT_FALSE(controller(1).showsIcons());
    EXPECT_NE(painted({"Root", "Host", "eth@0"}), iconOnly);
    EXPECT_FALSE(PreferencesStore::standard().flag(PreferenceKeys::showIcons));
    close();
    open();
    EXPECT_FALSE(controller_->showsIcons());
    EXPECT_FALSE(controller_->showsDeviceNames());
}

TEST_F(RowDetails, KeepTheHeightOfRows)
{
    open();
    const int height = tree().visualRect(row({"Root", "Host"})).height();
    action("toggleIconsAction").trigger();
    tree().doItemsLayout();
    EXPECT_EQ(tree().visualRect(row({"Root", "Host"})).height(), height);
}

TEST_F(RowDetails, HaveAnIconByTheClassOfTheEntry)
{
    open();
    EXPECT_EQ(entryKind(*entry("eth@0")), EntryKind::Network);
    EXPECT_EQ(entryKind(*entry("fan@1")), EntryKind::Device);
    for (int kind = 0; kind < static_cast<int>(EntryKind::Count); ++kind) {
        const QIcon icon = EntryIcons::shared().icon(static_cast<EntryKind>(kind));
        for (const qreal scale : {1.0, 2.0}) {
            const QPixmap drawn = icon.pixmap(QSize(16, 16), scale);
            EXPECT_EQ(drawn.size(), QSize(16, 16) * scale) << kind;
            QImage empty = drawn.toImage();
            empty.fill(Qt::transparent);
            EXPECT_NE(drawn.toImage(), empty) << entryKindName(static_cast<EntryKind>(kind));
        }
    }
}

TEST_F(RowDetails, TakeTheIconOfTheDesktopWhereItHasASymbolicOne)
{
    const QTemporaryDir themes;
    const auto write = [&](const char *name, const char *content) {
        QFile file(themes.path() + QLatin1String("/sample/") + QLatin1String(name));
        QDir().mkpath(QFileInfo(file).path());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    };
    const auto *const red = R"(<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16">)"
                            R"(<rect width="16" height="16" fill="#ff0000"/></svg>)";
    write("index.theme", "[Icon Theme]\nName=Sample\nDirectories=devices\n"
                         "[devices]\nSize=16\nType=Scalable\nMinSize=8\nMaxSize=128\n");
    write("devices/drive-harddisk-symbolic.svg", red);
    write("devices/network-wired.svg", red); // coloured: not to be used
    const QString theme = QIcon::themeName();
    const QStringList paths = QIcon::themeSearchPaths();
    const auto imageOf = [](EntryKind kind) {
        return EntryIcons::shared().icon(kind).pixmap(16).toImage();
    };
    const QImage ownNetwork = imageOf(EntryKind::Network);
    QIcon::setThemeSearchPaths(QStringList(themes.path()) + paths);
    QIcon::setThemeName(QStringLiteral("sample"));
    const QColor disk = imageOf(EntryKind::Disk).pixelColor(8, 8);
    const QImage network = imageOf(EntryKind::Network);
    QIcon::setThemeName(theme);
    QIcon::setThemeSearchPaths(paths);
    const QPalette palette = QGuiApplication::palette();
    EXPECT_EQ(disk.rgb(),
              paleColor(palette.color(QPalette::Text), palette.color(QPalette::Base)).rgb());
    EXPECT_EQ(network, ownNetwork);
}

TEST(PaleColor, CanBeReadOnItsBackground)
{
    for (const QColor &background :
         {QColor(Qt::white), QColor(Qt::black), QColor(0x30, 0x8c, 0xc6)})
        for (const QColor &color : {QColor(Qt::black), QColor(Qt::white)}) {
            const QColor pale = paleColor(color, background);
            EXPECT_GE(contrast(pale, background), std::min(4.5, contrast(color, background)));
            EXPECT_LE(contrast(pale, background), contrast(color, background));
        }
}
