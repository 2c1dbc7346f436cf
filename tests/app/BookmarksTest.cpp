// SPDX-License-Identifier: Apache-2.0
#include "ApplicationFixture.h"
#include "platform/preferences/PreferencesStore.h"
#include "tests/support/EventLoop.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTableView>
#include <QTest>

namespace {
const QString disk = QStringLiteral("DxService:/bus/disk@0");

class BookmarksTest : public ApplicationFixture
{
protected:
    static void store(const QByteArray &bookmarks, const QJsonValue &defaultIndex)
    {
        PreferencesStore &preferences = PreferencesStore::standard();
        preferences.setValue(QStringLiteral("Bookmarks"),
                             QJsonDocument::fromJson(bookmarks).array());
        preferences.setValue(QStringLiteral("DefaultBookmarkIndex"), defaultIndex);
    }
    // Bookmarks of the disk.
    static QJsonArray listNamed(std::initializer_list<const char *> names)
    {
        QJsonArray list;
        for (const char *name : names)
            list.append(Bookmark::make(QString::fromUtf8(name), disk).record);
        return list;
    }
    static void storeNamed(std::initializer_list<const char *> names, int defaultIndex)
    {
        store(QJsonDocument(listNamed(names)).toJson(), defaultIndex);
    }
    // Like another running copy.
    void storeInOtherCopy(std::initializer_list<const char *> names, int defaultIndex) const
    {
        PreferencesStore::standard().synchronize();
        PreferencesStore copy(PreferencesStore::applicationIdentifier(), path("settings"));
        copy.setValue(QStringLiteral("Bookmarks"), listNamed(names));
        copy.setValue(QStringLiteral("DefaultBookmarkIndex"), defaultIndex);
    }
    static qint64 defaultIndex()
    {
        return PreferencesStore::standard().integer(QStringLiteral("DefaultBookmarkIndex"));
    }
    static std::string storedNames()
    {
        QStringList names;
        for (const auto &value : PreferencesStore::standard().list(QStringLiteral("Bookmarks")))
            names.append(value.toObject()[Bookmark::nameKey()].toString());
        return names.join(u' ').toStdString();
    }
    void openPanel()
    {
        trigger("toggleBookmarksPanelAction");
        panel_ = delegate_->bookmarksController().bookmarksPanel();
        table_ = outlet<QTableView>(panel_, "bookmarksTable");
        ASSERT_TRUE(panel_->isVisible());
    }
    std::string cell(int row, int column = 0) const
    {
        return table_->model()->index(row, column).data().toString().toStdString();
    }
    // "*" marks the selected row, "!" the default one, which is bold.
    std::string rows() const
    {
        std::string rows;
        for (int row = 0; row < table_->model()->rowCount(); ++row) {
            const QVariant font = table_->model()->index(row, 0).data(Qt::FontRole);
            rows += (row > 0 ? " " : "") + cell(row) + (font.value<QFont>().bold() ? "!" : "") +
                    (table_->selectionModel()->isRowSelected(row) ? "*" : "");
        }
        return rows;
    }
    void click(const char *button) const
    {
        outlet<QPushButton>(panel_, button)->click();
        turnEventLoop();
    }
    bool isEnabled(const char *button) const
    {
        return outlet<QPushButton>(panel_, button)->isEnabled();
    }
    // Like typing into the cell's editor.
    void type(int row, int column, const char *text) const
    {
        table_->setCurrentIndex(table_->model()->index(row, column));
        table_->edit(table_->currentIndex());
        typeIntoEditor(text);
    }
    QLineEdit *editor() const { return table_->viewport()->findChild<QLineEdit *>(); }
    void typeIntoEditor(const char *text) const
    {
        ASSERT_TRUE(editor());
        QTest::keyClicks(editor(), QString::fromUtf8(text));
        QTest::keyClick(editor(), Qt::Key_Return);
        turnEventLoop();
    }
    QList<QAction *> generatedItems() const
    {
        const auto *const menu = outlet<QMenu>(window().window(), "bookmarksMenu");
        auto *const marker = outlet<QAction>(window().window(), "bookmarksMarkerAction");
        return menu->actions().mid(menu->actions().indexOf(marker) + 1);
    }
    std::string menuItems() const
    {
        QStringList items;
        for (const QAction *action : generatedItems())
            items.append(action->text());
        return items.join(u' ').toStdString();
    }

    QDialog *panel_ = nullptr;
    QTableView *table_ = nullptr;
};
} // namespace

TEST_F(BookmarksTest, ReadsWhatIsStored)
{
    storeNamed({"beta", "Alpha", "gamma"}, 0);
    launch();
    EXPECT_EQ(menuItems(), "Alpha beta gamma");
    EXPECT_EQ(defaultIndex(), 1);
    EXPECT_EQ(storedNames(), "Alpha beta gamma");
    EXPECT_EQ(selectedPath(), disk);
    quit();
    launch();
    EXPECT_EQ(defaultIndex(), 1); // still beta
    quit();

    store(R"(["text", {"Bookmark Name": "a&b", "Bookmark Path": 7}, 5, {}])", 2);
    launch();
    EXPECT_EQ(menuItems(), " a&&b");
    EXPECT_TRUE(delegate_->bookmarksController().defaultBookmarkPath().isNull());
    quit();
    for (const QJsonValue &index : {QJsonValue(-2), QJsonValue(QStringLiteral("0"))}) {
        store(R"([{"Bookmark Name": "a", "Bookmark Path": "DxPower:/nowhere"}])", index);
        launch();
        EXPECT_TRUE(delegate_->bookmarksController().defaultBookmarkPath().isNull());
        quit();
    }
    // An invalid path leaves the window at the root.
    store(R"([{"Bookmark Name": "a", "Bookmark Path": "DxPower:/nowhere"}])", 0);
    launch();
    EXPECT_EQ(selectedPath(), QStringLiteral("(DxService)"));
    PreferencesStore::standard().setValue(QStringLiteral("Bookmarks"), 5);
    quit();
    launch();
    EXPECT_EQ(menuItems(), "");
}

TEST_F(BookmarksTest, LeadToTheirPlace)
{
    const QString bus = QStringLiteral("DxService:/bus");
    storeNamed({"disk"}, -1);
    launch();
    trigger("newDocumentAction");
    window(1).goToRegistryPath(bus);
    generatedItems().at(0)->trigger();
    EXPECT_EQ(selectedPath(0), disk);
    EXPECT_EQ(selectedPath(1), bus);

    window(1).window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window(1).window()));
    openPanel();
    EXPECT_TRUE(isEnabled("goBookmarkButton"));
    EXPECT_FALSE(isEnabled("deleteBookmarkButton"));
    click("goBookmarkButton"); // nothing is selected
    EXPECT_EQ(selectedPath(1), bus);
    table_->selectRow(0);
    EXPECT_TRUE(isEnabled("deleteBookmarkButton"));
    click("goBookmarkButton");
    EXPECT_EQ(selectedPath(1), disk);
    closeWindow(1);
    closeWindow(0);
    EXPECT_FALSE(isEnabled("goBookmarkButton"));
}

TEST_F(BookmarksTest, AreEditedInTheTable)
{
    storeNamed({"b", "c", "d"}, 0);
    launch();
    openPanel();
    EXPECT_EQ(rows(), "b! c d");
    type(0, 0, "Z");
    EXPECT_EQ(rows(), "c d Z!*");
    EXPECT_EQ(defaultIndex(), 2);
    EXPECT_EQ(storedNames(), "c d Z");
    EXPECT_EQ(menuItems(), "c d Z");
    type(1, 1, "DxPower:/supply");
    EXPECT_EQ(cell(1, 1), "DxPower:/supply");
    click("clearDefaultBookmarkButton");
    EXPECT_EQ(defaultIndex(), -1);
    EXPECT_EQ(rows(), "c d* Z");
    click("setDefaultBookmarkButton");
    EXPECT_EQ(defaultIndex(), 1);
    EXPECT_EQ(rows(), "c d!* Z");
    trigger("toggleBookmarksPanelAction");
    EXPECT_FALSE(panel_->isVisible());
    for (const char *key : {"Ctrl+Shift+B", "Ctrl+W"}) {
        trigger("toggleBookmarksPanelAction");
        QTest::keySequence(panel_, QKeySequence(QLatin1String(key)));
        EXPECT_FALSE(panel_->isVisible()) << key;
    }
}

TEST_F(BookmarksTest, AreAddedFromThePanel)
{
    launch();
    window().goToRegistryPath(QStringLiteral("DxPower:/supply"));
    openPanel();
    click("addBookmarkButton");
    EXPECT_EQ(rows(), "supply (DxPower)*");
    EXPECT_EQ(cell(0, 1), "DxPower:/supply");
    typeIntoEditor("mine");
    EXPECT_EQ(storedNames(), "mine");
    // Named like the window's own command does it.
    window().goToRegistryPath(disk);
    click("addBookmarkButton");
    EXPECT_EQ(rows(), "disk@0 (DxService)* mine");
    window().goToRegistryPath(QStringLiteral("DxService:/bus"));
    const QMainWindow *const asked = window().window();
    trigger("promptForBookmarkAction");
    EXPECT_EQ(outlet<QLineEdit>(asked, "addBookmarkNameField")->text(),
              QStringLiteral("bus (DxService)"));
    outlet<QCheckBox>(asked, "addBookmarkDefaultCheckbox")->setChecked(true);
    outlet<QPushButton>(asked, "addBookmarkOKButton")->click();
    EXPECT_EQ(rows(), "bus (DxService)! disk@0 (DxService)* mine"); // the selection follows
    trigger("promptForBookmarkAction");
    EXPECT_FALSE(outlet<QCheckBox>(asked, "addBookmarkDefaultCheckbox")->isChecked());
    outlet<QPushButton>(asked, "addBookmarkCancelButton")->click();
    table_->selectRow(1);
    click("deleteBookmarkButton");
    closeWindow();
    click("addBookmarkButton");
    EXPECT_EQ(rows(), "bus (DxService)! mine New Bookmark*");
    EXPECT_EQ(cell(2, 1), "");
}

TEST_F(BookmarksTest, AreDeletedByButtonAndKeyAndDraggedOut)
{
    storeNamed({"a", "b", "c"}, 2);
    launch();
    openPanel();
    const QAbstractItemModel &model = *table_->model();
    const std::unique_ptr<QMimeData> data(
        model.mimeData({model.index(1, 0), model.index(1, 1), model.index(0, 0)}));
    EXPECT_EQ(data->text(), disk);
    EXPECT_EQ(QJsonDocument::fromJson(data->data(QStringLiteral("Vandrel Bookmark"))).object(),
              Bookmark::make(QStringLiteral("b"), disk).record);
    EXPECT_EQ(table_->dragDropMode(), QAbstractItemView::DragOnly);

    QTest::keyClick(table_, Qt::Key_Delete); // nothing is selected
    EXPECT_EQ(rows(), "a b c!");
    table_->selectRow(2);
    QTest::keyClick(table_, Qt::Key_Delete);
    EXPECT_EQ(rows(), "a b*");
    EXPECT_EQ(defaultIndex(), -1);
    table_->selectRow(1);
    click("setDefaultBookmarkButton");
    EXPECT_EQ(defaultIndex(), 1);
    table_->selectRow(0);
    QTest::keyClick(outlet<QPushButton>(panel_, "deleteBookmarkButton"), Qt::Key_Backspace);
    EXPECT_EQ(rows(), "b!");
    EXPECT_EQ(defaultIndex(), 0);
    EXPECT_EQ(storedNames(), "b");
    EXPECT_FALSE(isEnabled("deleteBookmarkButton"));
    table_->selectRow(0);
    click("deleteBookmarkButton");
    EXPECT_EQ(storedNames(), "");
    EXPECT_EQ(menuItems(), "");
}

TEST_F(BookmarksTest, FollowAnotherCopy)
{
    storeNamed({"b", "c", "d"}, 1);
    launch();
    trigger("newDocumentAction");
    trigger("showPreferencesPanelAction");
    openPanel();
    table_->setCurrentIndex(table_->model()->index(2, 0));
    table_->edit(table_->currentIndex());
    QTest::keyClicks(editor(), QStringLiteral("D"));
    storeInOtherCopy({"a", "c", "d", "e"}, 3);
    ASSERT_TRUE(waitFor([&] { return rows() == "a c d* e!"; })) << rows();
    EXPECT_EQ(menuItems(), "a c d e");
    EXPECT_EQ(delegate_->defaultsController().defaultBookmarkPopUp()->currentText(),
              QStringLiteral("e"));
    QTest::keyClick(editor(), Qt::Key_Return);
    turnEventLoop();
    EXPECT_EQ(rows(), "a c D* e!");

    // Before the change is noticed: no change of either copy is lost.
    storeInOtherCopy({"a", "c", "D", "f"}, -1);
    delegate_->bookmarksController().addBookmarkNamed(QStringLiteral("g"), disk, false);
    EXPECT_EQ(storedNames(), "a c D f g");
    table_->selectRow(1);
    storeInOtherCopy({"D", "f"}, 0);
    click("deleteBookmarkButton"); // already deleted
    EXPECT_EQ(storedNames(), "D f");
    EXPECT_EQ(defaultIndex(), 0);
    type(1, 1, "DxPower:/supply");
    EXPECT_EQ(rows(), "D! f*");
    quit();
    EXPECT_EQ(storedNames(), "D f");
}

TEST_F(BookmarksTest, TheDefaultIsChosenInThePreferencesToo)
{
    storeNamed({"a", "b"}, 1);
    launch();
    trigger("showPreferencesPanelAction");
    auto *const popUp = delegate_->defaultsController().defaultBookmarkPopUp();
    EXPECT_EQ(popUp->currentText(), QStringLiteral("b"));
    const auto choose = [&](int item) {
        popUp->setCurrentIndex(item);
        Q_EMIT popUp->activated(item);
    };
    choose(popUp->findText(QStringLiteral("a")));
    EXPECT_EQ(defaultIndex(), 0);
    choose(0);
    EXPECT_EQ(defaultIndex(), -1);
    delegate_->bookmarksController().addBookmarkNamed(QStringLiteral("c"), {}, true);
    EXPECT_EQ(popUp->currentText(), QStringLiteral("c"));
    EXPECT_EQ(popUp->count(), 5); // the root, the marker and three bookmarks
}
