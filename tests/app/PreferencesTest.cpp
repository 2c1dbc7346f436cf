// SPDX-License-Identifier: Apache-2.0
#include "ApplicationFixture.h"
#include "app/ThemeController.h"
#include "display/PropertyFormatStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"
#include "tests/support/SettingsPortal.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
#include <QTreeView>
#include <numeric>
#include <set>

namespace {
class PreferencesTest : public ApplicationFixture
{
protected:
    static QJsonValue stored(const char *key)
    {
        return PreferencesStore::standard().value(QString::fromUtf8(key));
    }
    static void set(const char *key, const QJsonValue &value)
    {
        PreferencesStore::standard().setValue(QString::fromUtf8(key), value);
    }
    void openPanel()
    {
        trigger("showPreferencesPanelAction");
        panel_ = delegate_->defaultsController().preferencesWindow();
        ASSERT_TRUE(panel_->isVisible());
    }
    QAbstractButton *button(const char *name) const
    {
        return outlet<QAbstractButton>(panel_, name);
    }
    // The names of the checked buttons.
    std::string checked() const
    {
        std::set<std::string> names;
        for (const QAbstractButton *button : panel_->findChildren<QAbstractButton *>()) {
            if (button->isChecked())
                names.insert(button->objectName().toStdString() + ' ');
        }
        return std::accumulate(names.begin(), names.end(), std::string());
    }
    QComboBox &planes() const { return *outlet<QComboBox>(panel_, "defaultPlanePopUp"); }
    QTabWidget &tabs() const { return *outlet<QTabWidget>(panel_, "preferencesTabView"); }
    int interval() const { return outlet<QSpinBox>(panel_, "defaultPollIntervalField")->value(); }

    QDialog *panel_ = nullptr;
};
} // namespace

TEST_F(PreferencesTest, EveryControlIsWrittenAndShown)
{
    set("FindOptions", 64 + 1);
    launch();
    openPanel();
    for (const char *name :
         {"defaultViewBrowserCell", "filteredFindCheckbox", "findNameCheckbox", "findClassCheckbox",
          "findBundleIDCheckbox", "findKeysCheckbox", "findValuesCheckbox", "findSpecialCheckbox",
          "defaultAutoupdateCheckbox", "defaultPolledUpdateCheckbox"})
        button(name)->click();
    outlet<QSpinBox>(panel_, "defaultPollIntervalField")->setValue(0);
    outlet<QDoubleSpinBox>(panel_, "followIntervalField")->setValue(2.5);
    outlet<QSpinBox>(panel_, "recentDurationField")->setValue(90);
    QTest::keyClick(panel_, Qt::Key_2, Qt::ControlModifier);
    tabs().setCurrentIndex(2);
    const std::string chosen = checked();

    EXPECT_EQ(stored("DefaultView"), QStringLiteral("browser"));
    EXPECT_EQ(stored("DefaultPlane"), QStringLiteral("DxPower"));
    EXPECT_EQ(stored("FilteredFind"), QStringLiteral("no"));
    EXPECT_EQ(stored("FindOptions"), 2 + 8 + 16 + 32 + 128);
    EXPECT_EQ(stored("Autoupdate"), QStringLiteral("no"));
    EXPECT_EQ(stored("PolledUpdate"), QStringLiteral("yes"));
    EXPECT_EQ(stored("PolledUpdateInterval"), 0);
    EXPECT_EQ(stored("FollowInterval"), 2500);
    EXPECT_EQ(stored("RecentChangesDuration"), 90);
    EXPECT_EQ(stored("SelectedPreferencesTab"), QStringLiteral("Update"));

    // Open documents stay as they are; new ones follow.
    EXPECT_TRUE(document().dataStore()->isAutoupdate());
    trigger("newDocumentAction");
    EXPECT_FALSE(document(1).dataStore()->isAutoupdate());
    EXPECT_TRUE(document(1).dataStore()->isPolledUpdate());
    EXPECT_EQ(document(1).dataStore()->pollInterval(), 30.0);
    EXPECT_EQ(window(1).registryPlane(), QStringLiteral("DxPower"));
    EXPECT_TRUE(window(1).browserIsVisible());
    quit();

    launch();
    openPanel();
    EXPECT_EQ(tabs().currentWidget()->objectName(), QStringLiteral("Update"));
    EXPECT_EQ(checked(), chosen);
    EXPECT_EQ(interval(), 0);
    EXPECT_EQ(outlet<QDoubleSpinBox>(panel_, "followIntervalField")->value(), 2.5);
}

TEST_F(PreferencesTest, ToleratesWhatOthersHaveStored)
{
    set("Autoupdate", QStringLiteral("YES"));
    set("PolledUpdate", true);
    set("PolledUpdateInterval", QStringLiteral("soon"));
    set("DefaultView", 7);
    set("DefaultPlane", QStringLiteral("DxNowhere"));
    set("FindOptions", QJsonArray{1});
    set("SelectedPreferencesTab", QStringLiteral("Nowhere"));
    launch();
    EXPECT_FALSE(document().dataStore()->isAutoupdate());
    EXPECT_FALSE(document().dataStore()->isPolledUpdate());
    openPanel();
    EXPECT_EQ(planes().currentIndex(), -1);
    EXPECT_EQ(interval(), 30);
    EXPECT_TRUE(button("findInheritanceCheckbox")->isChecked());
    set("PolledUpdateInterval", 5e12);
    set("DefaultPlane", QStringLiteral("DxPower"));
    delegate_->defaultsController().showPreferencesPanel(); // shows what is stored now
    EXPECT_EQ(interval(), 2147483647);
    EXPECT_EQ(planes().currentText(), QStringLiteral("DxPower"));
    EXPECT_EQ(planes().count(), 3);
}

TEST_F(PreferencesTest, FollowAnotherCopyWithoutDroppingWhatIsTyped)
{
    launch();
    openPanel();
    EXPECT_TRUE(PreferencesStore::standard().isEmpty()); // looking writes nothing
    auto *const field = outlet<QSpinBox>(panel_, "defaultPollIntervalField");
    tabs().setCurrentIndex(2);
    field->setFocus();
    field->selectAll();
    QTest::keyClicks(field, QStringLiteral("7"));
    PreferencesStore::standard().synchronize();
    {
        PreferencesStore other(PreferencesStore::applicationIdentifier(), path("settings"));
        other.setFlag(QStringLiteral("PolledUpdate"), true);
        other.setValue(QStringLiteral("SelectedPreferencesTab"), QStringLiteral("View"));
    }
    ASSERT_TRUE(waitFor([&] { return button("defaultPolledUpdateCheckbox")->isChecked(); }));
    EXPECT_EQ(tabs().currentIndex(), 2);
    QTest::keyClick(field, Qt::Key_Return);
    EXPECT_EQ(stored("PolledUpdateInterval"), 7);
}

TEST_F(PreferencesTest, FormatsOfAnotherCopyAreShown)
{
    launch();
    service_->setProperties(service_->root(),
                            values::dictionary({{"config", values::data("86806fa3")}}));
    document().dataStore()->update();
    const auto *const view = outlet<QTreeView>(window().window(), "propertiesOutlineView");
    const auto shown = [view] {
        constexpr int value = TavPropertiesOutlineViewDataSource::ValueColumn;
        return view->model()->index(0, value).data().toString();
    };
    const QString automatic = shown();
    const auto *const item =
        static_cast<const TavPropertyOutlineItem *>(window().rootPropertyItem()->childAtIndex(0));
    const QString key =
        item->classPathForClass(item->registryEntry()->DxcoreClass()) + u':' + item->propertyPath();
    PreferencesStore(PropertyFormatStore::domain(), path("settings"))
        .setValue(key, QStringLiteral("1xbu"));
    EXPECT_TRUE(waitFor([&] { return shown() != automatic; }));
    const QString bytes = shown();
    PreferencesStore(PropertyFormatStore::domain(), path("settings")).remove(key);
    PreferencesStore(PreferencesStore::applicationIdentifier(), path("settings"))
        .setValue(PreferenceKeys::defaultFormat.toString(), QStringLiteral("4xlu"));
    EXPECT_TRUE(waitFor([&] { return shown() != automatic && shown() != bytes; }));
}

TEST_F(PreferencesTest, ThemeAppliesImmediatelyAndFollowsTheDesktopAndOtherCopies)
{
    if (!PrivateBus::isAvailable())
        GTEST_SKIP() << "dbus-daemon is not installed";
    const auto isDarkSoon = [this] {
        turnEventLoopFor(150);
        return isDark(window().window()->palette());
    };
    PrivateBus bus;
    SettingsPortal portal(bus.connect("portal"));
    portal.scheme = 1;
    ASSERT_TRUE(portal.start());
    std::optional<ThemeController> theme(std::in_place, std::nullopt, bus.connect("client"));
    launch();
    openPanel();
    auto &popUp = *outlet<QComboBox>(panel_, "themePopUp");
    const auto choose = [&](int item) {
        popUp.setCurrentIndex(item);
        Q_EMIT popUp.activated(item);
    };
    EXPECT_TRUE(isDarkSoon());
    EXPECT_EQ(QIcon::fallbackThemeName(), QStringLiteral("vandrel-dark"));
    portal.change(SettingsPortal::appearance, 2);
    EXPECT_FALSE(isDarkSoon());
    choose(2);
    EXPECT_EQ(stored("Theme"), QStringLiteral("dark"));
    EXPECT_TRUE(isDarkSoon());
    choose(0);
    EXPECT_FALSE(isDarkSoon());
    PreferencesStore::standard().synchronize();
    PreferencesStore(PreferencesStore::applicationIdentifier(), path("settings"))
        .setValue(QStringLiteral("Theme"), QStringLiteral("dark"));
    EXPECT_TRUE(waitFor(isDarkSoon));
    EXPECT_EQ(popUp.currentIndex(), 2);
    set("Theme", QStringLiteral("pink")); // counts as system
    EXPECT_FALSE(isDarkSoon());
    theme.emplace(Theme::Light, bus.connect("client")); // by the command line
    set("Theme", QStringLiteral("dark"));
    EXPECT_FALSE(isDarkSoon());
    for (const char *name : {"portal", "client"})
        QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
}
