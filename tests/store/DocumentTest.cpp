// SPDX-License-Identifier: Apache-2.0
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/RegistryTest.h"

#include <QTemporaryDir>

namespace {
// Records the calls of its document.
class RecordingWindow : public TavDocumentWindowController
{
public:
    explicit RecordingWindow(QStringList &log, std::function<void()> onChange = {})
        : log_(log)
        , onChange_(std::move(onChange))
    {}
    QWidget *documentWindow() const override { return nullptr; }
    void showWindow() override {}
    void synchronizeWindowTitleWithDocumentName() override { log_ += QStringLiteral("title"); }
    void noteDataStoreOutOfDate() override { log_ += QStringLiteral("out of date"); }
    void noteDataStoreChanged() override
    {
        log_ += QStringLiteral("changed");
        if (const auto call = onChange_)
            call(); // and this window may be gone
    }
    void noteDataStoreObjectChanged() override { log_ += QStringLiteral("object changed"); }
    void noteDataStoreObjectsTerminated() override { log_ += QStringLiteral("terminated"); }
    void noteDataStoreClearedTerminatedObjects() override { log_ += QStringLiteral("cleared"); }
    void dataViewOptionsChanged(TavRegistryProperty *) override
    {
        log_ += QStringLiteral("options");
    }

private:
    QStringList &log_;
    std::function<void()> onChange_;
};

class DocumentTest : public RegistryTest
{
protected:
    void SetUp() override
    {
        tree_.plane("DxService", R"(
            Root
              Host
                disk)");
        documents_.setWindowControllerFactory(
            [this](TavDocument &) { return std::make_unique<RecordingWindow>(log_, onChange_); });
    }
    void TearDown() override
    {
        documents_.closeAllDocuments();
        RegistryTest::TearDown();
    }
    TavDocument &open() { return static_cast<TavDocument &>(*documents_.newDocument()); }
    QStringList reported() { return std::exchange(log_, {}); }

    QStringList log_;
    std::function<void()> onChange_;
    TavDocumentController documents_{service_};
    QTemporaryDir folder_;
};
} // namespace

TEST_F(DocumentTest, RelaysNotificationsOfItsStore)
{
    service_.addClass(QStringLiteral("DxRoot"), QStringLiteral("DxRegistryEntry"),
                      QStringLiteral("root_mod"));
    service_.setBundlePath(QStringLiteral("root_mod"), QStringLiteral("/lib/root_mod.ko"));
    TavDocument &document = open();
    TavDataStore &store = *document.dataStore();
    reported();
    store.update();
    EXPECT_EQ(reported(), list({"title", "changed"}));
    EXPECT_FALSE(document.isDocumentEdited()); // there is no file to differ from
    // A single reread entry posts its own notification, which the document ignores.
    store.updateObject(*store.registryRoot());
    EXPECT_EQ(reported(), QStringList());
    service_.reportChange();
    EXPECT_EQ(reported(), list({"title", "out of date"}));
    EXPECT_FALSE(document.isDocumentEdited());

    // With a file, the title first shows that the document is edited.
    DocumentError error;
    const QString file = folder_.filePath(QStringLiteral("a.vandrel"));
    const auto toldSinceSaved = [&](const auto &change) {
        EXPECT_TRUE(document.save(file, error));
        EXPECT_FALSE(document.isDocumentEdited());
        reported();
        change();
        EXPECT_TRUE(document.isDocumentEdited());
        return reported();
    };
    EXPECT_EQ(toldSinceSaved([&] { service_.reportChange(); }),
              list({"title", "title", "out of date"}));
    EXPECT_EQ(toldSinceSaved([&] { store.update(); }), list({"title", "title", "changed"}));
    store.setAutoupdate(true);
    EXPECT_EQ(toldSinceSaved([&] { service_.terminate(tree_["disk"]); }),
              list({"title", "title", "terminated"}));
    EXPECT_EQ(toldSinceSaved([&] { store.clearTerminatedObjects(); }),
              list({"title", "title", "cleared"}));
    ASSERT_TRUE(document.save(file, error));
    document.dataViewOptionsChanged(nullptr);
    EXPECT_EQ(log_.last(), QStringLiteral("options"));
    // A document from a file finds the driver bundles of this machine.
    documents_.closeDocument(document);
    const auto *const opened = static_cast<TavDocument *>(documents_.openDocument(file, error));
    ASSERT_TRUE(opened);
    EXPECT_EQ(opened->dataStore()->registryRoot()->bundlePath(),
              QStringLiteral("/lib/root_mod.ko"));
}

TEST_F(DocumentTest, MayLoseItsWindowsAndItselfWhileNotifying)
{
    TavDocument *document = nullptr;
    onChange_ = [&] {
        if (document && !document->windowControllers().empty())
            document->removeWindowController(*document->windowControllers().back());
    };
    document = &open();
    document->makeWindowControllers();
    document->dataStore()->update();
    EXPECT_EQ(document->windowControllers().size(), 1U);

    onChange_ = [&] { documents_.closeDocument(*std::exchange(document, nullptr)); };
    document->makeWindowControllers();
    document->removeWindowController(*document->windowControllers().front());
    document->makeWindowControllers();
    document->dataStore()->update();
    EXPECT_EQ(documents_.documents().size(), 0U);
}
