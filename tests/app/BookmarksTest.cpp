#include "ApplicationFixture.h"
#include "platform/PreferencesStore.h"

#include <QAction>
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
class BookmarksTest : public ApplicationFixture
{
protected:
    void store(const QByteArray &bookmarks, const QJsonValue &defaultIndex = {})
    {
        PreferencesStore &preferences = PreferencesStore::standard();
        preferences.setValue(QStringLiteral("Bookmarks"),
                             QJsonDocument::fromJson(bookmarks).array());
        if (!defaultIndex.isNull())
            preferences.setValue(QStringLiteral("DefaultBookmarkIndex"), defaultIndex);
    }
    void storeNamed(const QStringList &names, int defaultIndex)
    {
        QJsonArray list;
        for (const QString &name : names)
            list.append(Bookmark::make(name, QStringLiteral("DxService:/bus/disk@0")).record);
        store(QJsonDocument(list).toJson(), defaultIndex);
    }
    static qint64 defaultIndex()
    {
        return PreferencesStore::standard().integer(QStringLiteral("DefaultBookmarkIndex"));
    }
    static QStringList storedNames()
    {
        QStringList names;
        for (const auto &value : PreferencesStore::standard().list(QStringLiteral("Bookmarks")))
            names.append(value.toObject()[Bookmark::nameKey()].toString());
        return names;
    }
    void openPanel()
    {
        trigger("toggleBookmarksPanelAction");
        panel_ = delegate_->bookmarksController().bookmarksPanel();
        table_ = outlet<QTableView>(panel_, "bookmarksTable");
        ASSERT_TRUE(panel_->isVisible());
    }
    QString cell(int row, int column = 0) const
    {
        return table_->model()->index(row, column).data().toString();
    }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < table_->model()->rowCount(); ++row)
            names.append(cell(row));
        return names;
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
    // As typed into the cell's editor.
    void type(int row, int column, const char *text) const
    {
        table_->setCurrentIndex(table_->model()->index(row, column));
        table_->edit(table_->currentIndex());
        typeIntoEditor(text);
    }
    void typeIntoEditor(const char *text) const
    {
        auto *const editor = table_->viewport()->findChild<QLineEdit *>();
        ASSERT_TRUE(editor);
        QTest::keyClicks(editor, QString::fromUtf8(text));
        QTest::keyClick(editor, Qt::Key_Return);
        turnEventLoop();
    }
    int selectedRow() const
    {
        const QModelIndexList rows = table_->selectionModel()->selectedRows();
        return rows.isEmpty() ? -1 : rows.first().row();
    }
    QList<QAction *> generatedItems(std::size_t document = 0) const
    {
        const auto *const menu = outlet<QMenu>(window(document).window(), "bookmarksMenu");
        auto *const marker = outlet<QAction>(window(document).window(), "bookmarksMarkerAction");
        return menu->actions().mid(menu->actions().indexOf(marker) + 1);
    }
    QStringList menuItems() const
    {
        QStringList items;
        for (const QAction *action : generatedItems())
            items.append(action->text());
        return items;
    }

    QDialog *panel_ = nullptr;
    QTableView *table_ = nullptr;
};

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList list;
    for (const char *text : texts)
        list.append(QString::fromUtf8(text));
    return list;
}
} // namespace

TEST_F(BookmarksTest, ReadsWhatIsStored)
{
    storeNamed(list({"beta", "Alpha", "gamma"}), 0);
    launch();
    EXPECT_EQ(menuItems(), list({"Alpha", "beta", "gamma"}));
    EXPECT_EQ(defaultIndex(), 1);
    EXPECT_EQ(window().registryPathForSelectedEntry(), QStringLiteral("DxService:/bus/disk@0"));
    quit();

    store(R"(["text", {"Bookmark Name": "a&b", "Bookmark Path": 7}, 5, {}])", 2);
    launch();
    EXPECT_EQ(menuItems(), list({"", "a&&b"}));
    EXPECT_TRUE(delegate_->bookmarksController().defaultBookmarkPath().isNull());
    quit();
    for (const QJsonValue &index : {QJsonValue(-2), QJsonValue(QStringLiteral("0"))}) {
        store(R"([{"Bookmark Name": "a", "Bookmark Path": "DxPower:/nowhere"}])", index);
        launch();
        EXPECT_TRUE(delegate_->bookmarksController().defaultBookmarkPath().isNull());
        quit();
    }
    // A path to nowhere leaves the window at the root.
    store(R"([{"Bookmark Name": "a", "Bookmark Path": "DxPower:/nowhere"}])", 0);
    launch();
    EXPECT_EQ(window().registryPlane(), QStringLiteral("DxService"));
    EXPECT_NE(window().selectedEntry(), nullptr);
    PreferencesStore::standard().setValue(QStringLiteral("Bookmarks"), 5);
    quit();
    launch();
    EXPECT_EQ(menuItems(), QStringList());
}

TEST_F(BookmarksTest, GoesWhereTheyLead)
{
    storeNamed(list({"disk"}), -1);
    launch();
    trigger("newDocumentAction");
    window(1).goToRegistryPath(QStringLiteral("DxService:/bus"));
    generatedItems().at(0)->trigger();
    EXPECT_EQ(window(0).registryPathForSelectedEntry(), QStringLiteral("DxService:/bus/disk@0"));
    EXPECT_EQ(window(1).registryPathForSelectedEntry(), QStringLiteral("DxService:/bus"));

    window(1).window()->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window(1).window()));
    openPanel();
    EXPECT_TRUE(isEnabled("goBookmarkButton"));
    EXPECT_FALSE(isEnabled("deleteBookmarkButton"));
    click("goBookmarkButton"); // nothing is selected
    EXPECT_EQ(window(1).registryPathForSelectedEntry(), QStringLiteral("DxService:/bus"));
    table_->selectRow(0);
    EXPECT_TRUE(isEnabled("deleteBookmarkButton"));
    click("goBookmarkButton");
    EXPECT_EQ(window(1).registryPathForSelectedEntry(), QStringLiteral("DxService:/bus/disk@0"));
    window(1).window()->close();
    window(0).window()->close();
    turnEventLoop();
    EXPECT_FALSE(isEnabled("goBookmarkButton"));
}

TEST_F(BookmarksTest, AreEditedInTheTable)
{
    storeNamed(list({"b", "c", "d"}), 0);
    launch();
    openPanel();
    EXPECT_TRUE(table_->model()->index(0, 0).data(Qt::FontRole).value<QFont>().bold());
    EXPECT_FALSE(table_->model()->index(1, 0).data(Qt::FontRole).value<QFont>().bold());
    type(0, 0, "Z");
    EXPECT_EQ(names(), list({"c", "d", "Z"}));
    EXPECT_EQ(selectedRow(), 2);
    EXPECT_EQ(defaultIndex(), 2);
    EXPECT_EQ(storedNames(), names());
    EXPECT_EQ(menuItems(), names());
    type(1, 1, "DxPower:/supply");
    EXPECT_EQ(names(), list({"c", "d", "Z"}));
    EXPECT_EQ(cell(1, 1), QStringLiteral("DxPower:/supply"));
    click("clearDefaultBookmarkButton");
    EXPECT_EQ(defaultIndex(), -1);
    table_->selectRow(1);
    click("setDefaultBookmarkButton");
    EXPECT_EQ(defaultIndex(), 1);
    EXPECT_TRUE(table_->model()->index(1, 0).data(Qt::FontRole).value<QFont>().bold());
    // Closed and shown again by the same command, whose title says which.
    Q_EMIT outlet<QMenu>(window().window(), "bookmarksMenu")->aboutToShow();
    EXPECT_EQ(outlet<QAction>(window().window(), "toggleBookmarksPanelAction")->text(),
              QStringLiteral("Hide All &Bookmarks"));
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
    EXPECT_EQ(names(), list({"supply (DxPower)"}));
    EXPECT_EQ(cell(0, 1), QStringLiteral("DxPower:/supply"));
    typeIntoEditor("mine");
    EXPECT_EQ(storedNames(), list({"mine"}));
    window().window()->close();
    turnEventLoop();
    click("addBookmarkButton");
    EXPECT_EQ(cell(1), QStringLiteral("New Bookmark"));
    EXPECT_EQ(cell(1, 1), QString());
    EXPECT_EQ(selectedRow(), 1);
}

TEST_F(BookmarksTest, AreDeletedByButtonAndKey)
{
    storeNamed(list({"a", "b", "c"}), 2);
    launch();
    openPanel();
    QTest::keyClick(table_, Qt::Key_Delete); // nothing is selected
    EXPECT_EQ(names().size(), 3);
    table_->selectRow(2);
    QTest::keyClick(table_, Qt::Key_Delete);
    EXPECT_EQ(names(), list({"a", "b"}));
    EXPECT_EQ(defaultIndex(), -1);
    EXPECT_EQ(selectedRow(), 1);
    table_->selectRow(0);
    QTest::keyClick(table_, Qt::Key_Backspace);
    EXPECT_EQ(storedNames(), list({"b"}));
    EXPECT_EQ(selectedRow(), -1);
    EXPECT_FALSE(isEnabled("deleteBookmarkButton"));
    table_->selectRow(0);
    click("deleteBookmarkButton");
    EXPECT_EQ(storedNames(), QStringList());
    EXPECT_EQ(menuItems(), QStringList());
}

TEST_F(BookmarksTest, AreDraggedOut)
{
    storeNamed(list({"a", "b"}), -1);
    launch();
    openPanel();
    const QAbstractItemModel &model = *table_->model();
    const std::unique_ptr<QMimeData> data(
        model.mimeData({model.index(1, 0), model.index(1, 1), model.index(0, 0)}));
    EXPECT_EQ(data->text(), QStringLiteral("DxService:/bus/disk@0"));
    EXPECT_EQ(QJsonDocument::fromJson(data->data(QStringLiteral("Vandrel Bookmark"))).object(),
              Bookmark::make(QStringLiteral("b"), QStringLiteral("DxService:/bus/disk@0")).record);
    EXPECT_EQ(table_->dragDropMode(), QAbstractItemView::DragOnly);
}

TEST_F(BookmarksTest, TheDefaultIsChosenInThePreferencesToo)
{
    storeNamed(list({"a", "b"}), 1);
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
