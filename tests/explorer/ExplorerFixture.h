#pragma once

#include "explorer/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/TreeBuilder.h"

#include <QMainWindow>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <string>

class QTreeView;

// A scripted registry and a window on it, shown.
class ExplorerFixture : public testing::Test
{
protected:
    ExplorerFixture();
    ~ExplorerFixture() override;

    // Captures what the script says as a document and opens its window.
    void open();
    void close(); // the document and its window
    void update() { store_->update(); }
    // The object goes from the host, noticed at once.
    void terminate(const char *label);

    TavRegistryEntry *entry(const char *label) const; // throws when it is not in the store
    TavRegistryEntryPath path(std::initializer_list<const char *> labels,
                              const char *plane = "DxService") const;
    QString preferencesFolder() const { return preferences_.path(); }
    template<class Outlet>
    Outlet *outlet(const char *name) const
    {
        return InterfaceLoader::outlet<Outlet>(*controller_->window(), name);
    }

    FakeLiveService service_;
    TreeBuilder registry_{service_};
    TavDocumentController documents_{service_};
    TavDocument *document_ = nullptr;
    std::shared_ptr<TavDataStore> store_; // the document's
    TavWindowController *controller_ = nullptr;
    int beeps_ = 0;

private:
    QTemporaryDir preferences_;
};

// The rows that a tree shows, two spaces a level: "+" marks one that is closed, "*" the selected
// one; the texts of further columns follow after "|".
std::string rowsOf(const QTreeView &view);
