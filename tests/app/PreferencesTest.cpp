#include "ApplicationFixture.h"
#include "platform/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDialog>
#include <QSpinBox>
#include <QTabWidget>
#include <QTest>
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
    // The buttons that are checked, by name.
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

TEST_F(PreferencesTest, DefaultsApplyUntilSomethingIsStored)
{
    launch();
    EXPECT_TRUE(PreferencesStore::standard().isEmpty());
    const TavDataStore &store = *document().dataStore();
    EXPECT_TRUE(store.isAutoupdate());
    EXPECT_FALSE(store.isPolledUpdate());
    EXPECT_EQ(store.pollInterval(), 30.0);
    openPanel();
    EXPECT_EQ(checked(), "defaultAutoupdateCheckbox defaultViewOutlineCell filteredFindCheckbox "
                         "findInheritanceCheckbox findNameCheckbox ");
    EXPECT_EQ(planes().currentText(), QStringLiteral("DxService"));
    EXPECT_EQ(planes().count(), 3); // with a separator
    EXPECT_EQ(planes().itemText(2), QStringLiteral("DxPower"));
    EXPECT_EQ(interval(), 30);
    EXPECT_TRUE(PreferencesStore::standard().isEmpty());
}

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
    EXPECT_EQ(stored("SelectedPreferencesTab"), QStringLiteral("Update"));

    // Documents that are open stay as they are; new ones follow.
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
