// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeBuilder.h"
#include "tests/support/TreeText.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QMainWindow>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <string>

using Labels = std::initializer_list<const char *>; // of a path, from the root on

// A scripted registry and a window on it, shown.
class ExplorerFixture : public testing::Test
{
protected:
    ExplorerFixture();
    ~ExplorerFixture() override;
    void TearDown() override { tester_.reset(); }

    // A bus of two disks, the first of which is in another plane, too.
    void plantDisks();
    // A new object of the host, or many numbered ones, for the next update to find.
    FakeRegistry::Node add(const char *parent, const QByteArray &name);
    void add(const char *parent, const QByteArray &name, int first, int count);
    // Removes the object from the host; the store notices immediately.
    void terminate(const char *label);

    // Captures what the script says as a document and opens its window.
    void open();
    void openFile(const QString &file);
    void openArchived(const char *name = "then.vandrel"); // the document, once saved and closed
    void close();                                         // the document and its window
    void update() { store_->update(); }

    TavRegistryEntry *entry(const char *label) const; // throws when it is not in the store
    TavRegistryEntryPath path(Labels labels, const char *plane = "DxService") const;
    void select(Labels labels, const char *plane = "DxService");
    void selectNothing() { controller_->goToEntryPath(std::nullopt, false, false); }
    std::string selected() const; // its path
    void showPlane(const char *plane);
    void find(const char *text);
    static std::string copied(); // the text on the clipboard
    static void prefer(const char *key, const QJsonValue &value);

    template<class Outlet>
    Outlet *outlet(const char *name) const
    {
        return InterfaceLoader::outlet<Outlet>(*controller_->window(), name);
    }
    QAction &action(const char *name) const { return *outlet<QAction>(name); }
    void click(const char *button) const;
    QMainWindow &window() const { return *controller_->window(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const; // where the focus is
    TavWindowController &controller(std::size_t number) const;           // of the document
    static bool activate(QWidget &window);

    TavRegistryOutlineView &tree() const;
    QModelIndex row(Labels labels) const; // in the tree
    std::string rows() const;             // of the tree
    // Checks the view's model for consistency from now on.
    void testModelOf(const QAbstractItemView &view);
    QString preferencesFolder() const { return preferences_.path(); }

    FakeLiveService service_;
    TreeBuilder registry_{service_};
    TavDocumentController documents_{service_};
    TavDocument *document_ = nullptr;
    std::shared_ptr<TavDataStore> store_; // the document's
    TavWindowController *controller_ = nullptr;
    int beeps_ = 0;
    std::unique_ptr<QAbstractItemModelTester> tester_;

private:
    void follow(TavDocument &document);

    QTemporaryDir preferences_;
};

// The rows that a tree shows, two spaces a level: "+" marks one that is closed, "*" the selected
// one; the texts of further columns follow after "|".
std::string rowsOf(const QTreeView &view);
// On the arrow that opens and closes the row.
void clickExpander(QTreeView &view, const QModelIndex &row, Qt::KeyboardModifiers modifiers = {});
