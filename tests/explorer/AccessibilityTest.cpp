// SPDX-License-Identifier: Apache-2.0
// What users of a screen reader or of the keyboard alone need.
#include "ExplorerFixture.h"

#include <QAbstractButton>
#include <QMenu>
#include <QMenuBar>

namespace {
class AccessibilityTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        prefer("FindOptions", 1);
        open();
    }
    // The controls that the tab key visits, from the find field on until one repeats.
    std::string tabRound(Qt::KeyboardModifiers modifiers = {}) const
    {
        const auto *const browser = outlet<QWidget>("registryBrowser");
        QStringList met;
        outlet<QWidget>("findField")->setFocus();
        QString name = QStringLiteral("findField");
        while (!met.contains(name)) {
            met.append(name);
            QTest::keyClick(window().focusWidget(), Qt::Key_Tab, modifiers);
            const QWidget *const focused = window().focusWidget();
            name = (browser->isAncestorOf(focused) ? browser : focused)->objectName();
        }
        if (modifiers)
            std::reverse(met.begin() + 1, met.end());
        return met.join(u' ').toStdString() + " > " + name.toStdString();
    }
    void expectRound(const std::string &explorer) const
    {
        const bool isService = controller_->selectedEntry()->conformsToDxService();
        const std::string round =
            "findField " + explorer +
            " propertiesFilterField propertiesOutlineView objectNameField objectInheritanceField "
            "objectBundleField objectBundleFileField objectKernelPathField "
            "objectRetainCountField " +
            (isService ? "objectBusyCountField " : "") +
            "planeListButton outlineSegment entryPathsButton findOptionsDrawerButton > findField";
        EXPECT_EQ(tabRound(), round);
        EXPECT_EQ(tabRound(Qt::ShiftModifier), round) << "backwards";
    }
};
} // namespace

TEST_F(AccessibilityTest, TheTabKeyComesByEveryControlOnce)
{
    expectRound("registryOutlineView");
    controller_->browserView();
    for (const char *deeper : {"Host", "bus", "disk@0"}) { // another column comes into being
        controller_->makeExplorerFirstResponder();
        press(Qt::Key_Right);
        ASSERT_EQ(controller_->selectedEntry(), entry(deeper));
        expectRound("registryBrowser");
    }
    controller_->outlineView();
    expectRound("registryOutlineView");
    controller_->browserView();
    expectRound("registryBrowser");
}

TEST_F(AccessibilityTest, EveryControlHasAName)
{
    for (const QWidget *widget : window().findChildren<QWidget *>()) {
        if (widget->focusPolicy() == Qt::NoFocus || widget->objectName().startsWith(u"qt_") ||
            widget->objectName().isEmpty())
            continue;
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
    for (const char *field : {"findField", "findPreviewField"})
        EXPECT_EQ(outlet<QWidget>(field)->findChild<QAbstractButton *>()->accessibleName(),
                  QStringLiteral("Clear"));
}

// Every command is in a menu, and no two share a key or a mnemonic.
TEST_F(AccessibilityTest, EveryCommandHasItsPlaceItsKeyAndItsLetter)
{
    const auto mnemonic = [](const QString &text) {
        return QKeySequence::mnemonic(text).toString().toStdString();
    };
    for (int state = 0; state < 2; ++state) {
        std::map<std::string, QString> keys;
        const auto menus = outlet<QMenuBar>("menuBar")->findChildren<QMenu *>();
        QSet<const QAction *> placed;
        for (const QMenu *menu : menus) {
            std::map<std::string, QString> letters;
            for (const QAction *action : menu->actions()) {
                placed.insert(action);
                for (const QKeySequence &key : action->shortcuts())
                    EXPECT_TRUE(keys.emplace(key.toString().toStdString(), action->text()).second)
                        << key.toString().toStdString();
                const std::string letter = mnemonic(action->text());
                if (!letter.empty())
                    EXPECT_TRUE(letters.emplace(letter, action->text()).second)
                        << menu->objectName().toStdString() << ' ' << letter;
                else if (!action->objectName().isEmpty() && !action->text().isEmpty())
                    ADD_FAILURE() << "no mnemonic: " << action->text().toStdString();
            }
        }
        for (const QAction *action : window().findChildren<QAction *>()) {
            const QString name = action->objectName();
            EXPECT_TRUE(!name.endsWith(QLatin1String("Action")) || placed.contains(action))
                << name.toStdString();
        }
        store_->setPolledUpdate(true);
        controller_->toggleShowTerminatedObjects();
    }
}
