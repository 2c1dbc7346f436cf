// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DesktopRunLoop.h"
#include "platform/documents/DocumentController.h"
#include "platform/documents/DocumentFile.h"
#include "platform/runloop/LongWork.h"
#include "tests/support/EventLoop.h"

#include <QApplication>
#include <QFile>
#include <QProgressDialog>
#include <QPushButton>
#include <QTemporaryDir>
#include <QThread>
#include <gtest/gtest.h>

namespace {
constexpr int tooLong = 10'000;

QProgressDialog *shownDialog()
{
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *const dialog = qobject_cast<QProgressDialog *>(window);
        if (dialog && dialog->isVisible())
            return dialog;
    }
    return nullptr;
}

// Goes on until it is ended.
void workOn(WorkProgress &progress)
{
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < tooLong) {
        progress.reach(0.5);
        QThread::msleep(1);
    }
}

class SlowDocument : public Document
{
public:
    using Document::Document;
    void makeWindowControllers() override {}
    QString fileType() const override { return {}; }

protected:
    Content decode(const QByteArray &, const QString &, WorkProgress &progress) override
    {
        workOn(progress);
        return nullptr;
    }
    bool writeData(QIODevice &, const QString &, DocumentError &) override { return true; }
};

class SlowDocuments : public DocumentController
{
protected:
    std::unique_ptr<Document> makeUntitledDocument() override { return makeDocument(); }
    std::unique_ptr<Document> makeDocument() override
    {
        return std::make_unique<SlowDocument>(*this);
    }
};

class WorkDialogTest : public testing::Test
{
protected:
    // Presses the dialog's button when it is seen.
    void cancelWhenShown()
    {
        timer_.callOnTimeout(&timer_, [this] {
            if (const QProgressDialog *const dialog = shownDialog()) {
                wasModal_ = dialog->isModal();
                wasInDefaultMode_ = RunLoop::main().isInDefaultMode();
                dialog->findChild<QPushButton *>()->click();
            }
        });
        timer_.start(5);
    }

    DesktopRunLoop loop_;
    QTimer timer_;
    bool wasModal_ = false;
    bool wasInDefaultMode_ = true;
};

TEST_F(WorkDialogTest, ShortWorkShowsNothingAndItsFailureComesThrough)
{
    LongWork work(QStringLiteral("Working…"));
    const QThread *thread = nullptr;
    EXPECT_TRUE(work.run([&](WorkProgress &) { thread = QThread::currentThread(); }));
    EXPECT_NE(thread, QThread::currentThread());
    EXPECT_THROW(work.run([](WorkProgress &) { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_FALSE(shownDialog());
    EXPECT_TRUE(RunLoop::main().isInDefaultMode());
}

TEST_F(WorkDialogTest, LongWorkIsShownAndCanBeEnded)
{
    cancelWhenShown();
    QElapsedTimer time;
    time.start();
    {
        LongWork work(QStringLiteral("Working…"));
        EXPECT_FALSE(work.run(workOn));
        EXPECT_TRUE(wasModal_);
        EXPECT_FALSE(wasInDefaultMode_);
        EXPECT_TRUE(shownDialog()); // while there is something left to do
    }
    EXPECT_FALSE(shownDialog());
    EXPECT_GE(time.elapsed(), 500);
    EXPECT_LT(time.elapsed(), tooLong);
}

TEST_F(WorkDialogTest, WorkOfAMomentIsShownAtOnceAndTakesNoFocus)
{
    LongWork work(QStringLiteral("Searching…"), LongWork::Kind::Moment);
    bool wasShown = false;
    timer_.callOnTimeout(&timer_, [&] {
        const QProgressDialog *const dialog = shownDialog();
        wasShown = wasShown || (dialog && !dialog->isModal() &&
                                dialog->windowFlags() & Qt::WindowDoesNotAcceptFocus &&
                                dialog->testAttribute(Qt::WA_ShowWithoutActivating) &&
                                !dialog->findChild<QPushButton *>());
    });
    timer_.start(1);
    EXPECT_TRUE(work.run([](WorkProgress &) { QThread::msleep(100); }));
    EXPECT_TRUE(wasShown);
}

TEST_F(WorkDialogTest, DocumentWhoseOpeningIsEndedIsNotOpen)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("file")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    cancelWhenShown();
    SlowDocuments documents;
    DocumentError error;
    EXPECT_FALSE(documents.openDocument(file.fileName(), error));
    EXPECT_TRUE(DocumentFile::isCancelled(error));
    EXPECT_TRUE(documents.documents().empty());
}
} // namespace
