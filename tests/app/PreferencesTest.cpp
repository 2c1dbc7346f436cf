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
    QStringList planes() const
    {
        const auto *const popUp = outlet<QComboBox>(panel_, "defaultPlanePopUp");
        QStringList planes;
        for (int i = 0; i < popUp->count(); ++i)
            planes.append(popUp->itemText(i));
        return planes;
    }

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
    EXPECT_TRUE(button("defaultViewOutlineCell")->isChecked());
    EXPECT_EQ(outlet<QComboBox>(panel_, "defaultPlanePopUp")->currentText(),
              QStringLiteral("DxService"));
    EXPECT_EQ(planes(), QStringList({QStringLiteral("DxService"), {}, QStringLiteral("DxPower")}));
    EXPECT_TRUE(button("filteredFindCheckbox")->isChecked());
    for (const char *name : {"findNameCheckbox", "findInheritanceCheckbox"})
        EXPECT_TRUE(button(name)->isChecked()) << name;
    for (const char *name : {"findClassCheckbox", "findBundleIDCheckbox", "findKeysCheckbox",
                             "findValuesCheckbox", "findSpecialCheckbox"})
        EXPECT_FALSE(button(name)->isChecked()) << name;
    EXPECT_EQ(outlet<QSpinBox>(panel_, "defaultPollIntervalField")->value(), 30);
    EXPECT_TRUE(PreferencesStore::standard().isEmpty());
}

TEST_F(PreferencesTest, EveryControlIsWrittenAndShown)
{
    set("FindOptions", 64 + 1);
    launch();
    openPanel();
    button("defaultViewBrowserCell")->click();
    button("filteredFindCheckbox")->click();
    for (const char *name : {"findNameCheckbox", "findClassCheckbox", "findBundleIDCheckbox",
                             "findKeysCheckbox", "findValuesCheckbox", "findSpecialCheckbox"})
        button(name)->click();
    button("defaultAutoupdateCheckbox")->click();
    button("defaultPolledUpdateCheckbox")->click();
    auto *const interval = outlet<QSpinBox>(panel_, "defaultPollIntervalField");
    interval->setValue(0);
    QTest::keyClick(panel_, Qt::Key_2, Qt::ControlModifier);
    outlet<QTabWidget>(panel_, "preferencesTabView")->setCurrentIndex(2);

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
    EXPECT_EQ(outlet<QTabWidget>(panel_, "preferencesTabView")->currentWidget()->objectName(),
              QStringLiteral("Update"));
    EXPECT_TRUE(button("defaultViewBrowserCell")->isChecked());
    EXPECT_TRUE(button("findSpecialCheckbox")->isChecked());
    EXPECT_FALSE(button("findNameCheckbox")->isChecked());
    EXPECT_EQ(outlet<QSpinBox>(panel_, "defaultPollIntervalField")->value(), 0);
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
    EXPECT_EQ(outlet<QComboBox>(panel_, "defaultPlanePopUp")->currentIndex(), -1);
    EXPECT_EQ(outlet<QSpinBox>(panel_, "defaultPollIntervalField")->value(), 30);
    EXPECT_TRUE(button("findInheritanceCheckbox")->isChecked());
    set("PolledUpdateInterval", 5e12);
    set("DefaultPlane", QStringLiteral("DxPower"));
    delegate_->defaultsController().showPreferencesPanel(); // shows what is stored now
    EXPECT_EQ(outlet<QSpinBox>(panel_, "defaultPollIntervalField")->value(), 2147483647);
    EXPECT_EQ(outlet<QComboBox>(panel_, "defaultPlanePopUp")->currentText(),
              QStringLiteral("DxPower"));
    EXPECT_EQ(planes().size(), 3);
}
