// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/FieldNote.h"
#include "platform/widgets/SearchField.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"

#include <QCheckBox>
#include <QCompleter>
#include <QInputDialog>
#include <QListView>
#include <QMenu>

using namespace values;

namespace {
class FilterModeTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        service_.setProperties(registry_["disk@0"],
                               dictionary({{"speed", number(1)}, {"max_speed", number(2)}}));
        service_.setProperties(registry_["disk@1"],
                               dictionary({{"speed", number(2)}, {"max_speed", number(2)}}));
        prefer("FindOptions", 1);
        PreferencesStore::standard().setFlag(QStringLiteral("FilteredFind"), true);
        open();
    }
    SearchField &field() const { return *outlet<SearchField>("findField"); }
    std::string note() const
    {
        const auto *const note = window().findChild<FieldNote *>();
        return note->isVisible() ? note->text().toStdString() : std::string();
    }
    void type(const char *text, bool ends = true)
    {
        field().setFocus();
        field().clear();
        QTest::keyClicks(&field(), QString::fromUtf8(text));
        hideOffers();
        if (ends)
            QTest::keyClick(&field(), Qt::Key_Return);
    }
    QAbstractItemView &offers() const { return *field().findChild<QCompleter *>()->popup(); }
    void hideOffers()
    {
        if (offers().isVisible())
            QTest::keyClick(&offers(), Qt::Key_Escape);
    }
    QStringList inPreferences(const char *key) const
    {
        return PreferencesStore::standard()
            .value(QString::fromLatin1(key))
            .toVariant()
            .toStringList();
    }
    // Of the Find menu as it is when it opens.
    QAction *findItem(const char *text) const
    {
        auto *const menu = outlet<QMenu>("findMenu");
        Q_EMIT menu->aboutToShow();
        const auto items = menu->findChildren<QAction *>() + menu->actions();
        const auto found = std::find_if(items.begin(), items.end(), [&](const QAction *item) {
            return item->text() == QLatin1String(text);
        });
        return found == items.end() ? nullptr : *found;
    }
};
} // namespace

TEST_F(FilterModeTest, FiltersByAnExpressionAsASearchDoes)
{
    type("speed < max_speed");
    EXPECT_EQ(controller_->foundObjects()->size(), 0); // a text, until one asks for the mode
    action("toggleFilterModeAction").trigger();
    EXPECT_TRUE(action("toggleFilterModeAction").isChecked());
    EXPECT_EQ(rows(), "Root\n  Host\n    bus\n      disk@0 *\n");
    EXPECT_FALSE(outlet<QCheckBox>("findNameCheckbox")->isEnabled());

    type("speed");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    action("findNextAction").trigger();
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    service_.setProperties(registry_["module"], dictionary({{"speed", number(3)}}));
    update();
    EXPECT_EQ(controller_->foundObjects()->size(), 3);

    // What is active stays so while the mode and the options are others.
    QTest::keyClick(&field(), Qt::Key_Escape);
    EXPECT_FALSE(controller_->foundObjects().has_value());
    EXPECT_TRUE(action("toggleFilterModeAction").isChecked());
    action("toggleFilterModeAction").trigger();
    click("findNameCheckbox");
    EXPECT_FALSE(field().isEnabled());
    action("toggleFilterModeAction").trigger();
    type("speed == 3");
    EXPECT_EQ(selected(), "DxService:/module");
}

TEST_F(FilterModeTest, ExplainsWhatIsWrongAndMovesNothing)
{
    action("toggleFilterModeAction").trigger();
    type("speed == 2");
    const std::string before = rows();
    type("speed == == 2", false);
    EXPECT_TRUE(waitFor([&] { return !note().empty(); }));
    EXPECT_NE(note().find("after “==”"), std::string::npos);
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(controller_->findQuery(), QStringLiteral("speed == 2"));
    update(); // the search that is shown runs again, not what is in the field
    EXPECT_EQ(rows(), before);
    QTest::keyClick(&field(), Qt::Key_Backspace);
    EXPECT_NE(note(), "");
    activate(window()); // the list of keys was active for a moment
    controller_->makeExplorerFirstResponder();
    EXPECT_EQ(note(), "");
    type("speed == 1");
    EXPECT_EQ(note(), "");
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
}

TEST_F(FilterModeTest, CompletesTheWordAtTheCursor)
{
    action("toggleFilterModeAction").trigger();
    field().clear();
    QTest::keyClicks(&field(), QStringLiteral("1 == 1 and max"));
    ASSERT_TRUE(offers().isVisible());
    EXPECT_EQ(offers().model()->rowCount(), 1);
    QTest::keyClick(&offers(), Qt::Key_Tab);
    EXPECT_EQ(field().text(), QStringLiteral("1 == 1 and max_speed"));
    EXPECT_FALSE(offers().isVisible());
    QTest::keyClicks(&field(), QStringLiteral(" ~ 'max"));
    EXPECT_FALSE(offers().isVisible()); // a text
    QTest::keyClicks(&field(), QStringLiteral("' or inher"));
    ASSERT_TRUE(offers().isVisible());
    QTest::keyClick(&offers(), Qt::Key_Escape);
    EXPECT_FALSE(offers().isVisible());
    EXPECT_FALSE(field().text().isEmpty());

    action("toggleFilterModeAction").trigger();
    field().clear();
    QTest::keyClicks(&field(), QStringLiteral("max"));
    EXPECT_FALSE(offers().isVisible());
}

TEST_F(FilterModeTest, RemembersAndSavesExpressions)
{
    action("toggleFilterModeAction").trigger();
    for (int i = 0; i < 22; ++i)
        type(qPrintable(QStringLiteral("speed == %1").arg(i)));
    type("speed == 3");
    type("speed ==");
    const QStringList recent = inPreferences("RecentFilters");
    EXPECT_EQ(recent.size(), 20);
    EXPECT_EQ(recent.constFirst(), QStringLiteral("speed == 3"));
    EXPECT_EQ(recent.count(recent.constFirst()), 1);
    EXPECT_FALSE(action("saveFilterAction").isEnabled());

    type("speed < max_speed");
    EXPECT_TRUE(action("saveFilterAction").isEnabled());
    action("saveFilterAction").trigger();
    auto *const dialog = window().findChild<QInputDialog *>();
    ASSERT_NE(dialog, nullptr);
    dialog->setTextValue(QStringLiteral("Slow & old"));
    dialog->accept();
    type("");
    action("toggleFilterModeAction").trigger();
    ASSERT_NE(findItem("Slow && old"), nullptr);
    outlet<QMenu>("findMenu")->actions().constLast()->trigger();
    EXPECT_EQ(selected(), "DxService:/bus/disk@0");
    EXPECT_TRUE(action("toggleFilterModeAction").isChecked());
    outlet<QMenu>("findMenu")->findChild<QMenu *>()->actions().constFirst()->trigger();
    EXPECT_EQ(findItem("Slow && old"), nullptr);
}
