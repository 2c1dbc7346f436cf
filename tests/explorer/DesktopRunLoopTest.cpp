// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DesktopRunLoop.h"
#include "platform/runloop/OneShotTimer.h"
#include "tests/support/EventLoop.h"
#include "tests/support/ScriptedWait.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>

namespace {
class DesktopRunLoopTest : public testing::Test
{
protected:
    // Whether a due timer fires.
    bool acts()
    {
        bool acted = false;
        const auto timer = OneShotTimer::schedule(0, [&](const auto &) { acted = true; });
        return waitFor([&] { return acted; });
    }
    void startTimer()
    {
        timer_ = OneShotTimer::schedule(0, [this](const auto &) { hasActed_ = true; });
    }

    DesktopRunLoop loop_;
    // Waits, and acts on the dialog about once every tenth of a second until that is enough.
    void waitActing(Wait &wait, const std::function<bool(WaitDialog &)> &act) const
    {
        QElapsedTimer time;
        time.start();
        RunLoop::main().wait(wait, [&](auto most) {
            QThread::usleep(static_cast<unsigned long>(most.count()) * 1000);
            return (loop_.waitDialog() && act(*loop_.waitDialog())) || time.elapsed() > 10'000;
        });
    }

    OneShotTimer::Ref timer_;
    bool hasActed_ = false;
};

TEST_F(DesktopRunLoopTest, TimersWaitWhileAMenuIsOpen)
{
    EXPECT_TRUE(acts());
    QMenu menu;
    menu.addAction(QStringLiteral("Nothing"));
    menu.popup({});
    startTimer();
    turnEventLoopFor(50);
    EXPECT_FALSE(hasActed_);
    menu.close();
    EXPECT_TRUE(waitFor([&] { return hasActed_; }));
}

TEST_F(DesktopRunLoopTest, TimersWaitForTheLastApplicationModalDialog)
{
    auto outer = std::make_unique<QDialog>();
    outer->setWindowModality(Qt::ApplicationModal);
    outer->show();
    QDialog inner;
    inner.setModal(true);
    inner.show();
    startTimer();
    inner.hide();
    turnEventLoopFor(50);
    EXPECT_FALSE(hasActed_);
    outer.reset();
    EXPECT_TRUE(waitFor([&] { return hasActed_; }));

    QWidget window;
    window.show();
    QDialog sheet(&window);
    sheet.setWindowModality(Qt::WindowModal);
    sheet.show();
    EXPECT_TRUE(acts());
}

TEST_F(DesktopRunLoopTest, LongWaitIsShownAndOutlivesItsWindow)
{
    for (const bool hasWindow : {false, true}) {
        SCOPED_TRACE(hasWindow);
        auto window = std::make_unique<QWidget>();
        window->setVisible(hasWindow);
        window->activateWindow();
        ASSERT_TRUE(!hasWindow || QTest::qWaitForWindowActive(window.get()));
        QElapsedTimer time;
        time.start();
        bool wasShown = false;
        ScriptedWait wait;
        RunLoop::main().wait(wait, [&](auto most) {
            QThread::usleep(static_cast<unsigned long>(most.count()) * 1000);
            wasShown = loop_.waitDialog() && loop_.waitDialog()->isVisible();
            if (wasShown) {
                EXPECT_GE(time.elapsed(), 500);
                EXPECT_EQ(loop_.waitDialog()->parentWidget(), hasWindow ? window.get() : nullptr);
                window.reset();
            }
            return wasShown || time.elapsed() > 10'000;
        });
        EXPECT_TRUE(wasShown);
        EXPECT_FALSE(loop_.waitDialog());
        EXPECT_TRUE(acts());
    }
}

TEST_F(DesktopRunLoopTest, NamesWhatIsWaitedForAndLetsItBeSkipped)
{
    const QString deep = QStringLiteral("devices/") + QString(300, u'x') + QStringLiteral("/slow");
    ScriptedWait wait({deep, QStringLiteral("blocks")});
    waitActing(wait, [&](WaitDialog &dialog) {
        const auto *const subject = dialog.findChild<QLabel *>(QStringLiteral("waitSubject"));
        auto *const skip = dialog.findChild<QPushButton *>(QStringLiteral("skipButton"));
        if (!wait.isSkipped) {
            EXPECT_TRUE(subject->text().endsWith(QStringLiteral("/slow\nAttribute: blocks")));
            EXPECT_EQ(subject->accessibleName(),
                      QStringLiteral("Waiting for %1\nAttribute: blocks").arg(deep));
            EXPECT_EQ(dialog.accessibleName(), QStringLiteral("Reading the device registry…"));
            EXPECT_LT(dialog.width(), 1000);
            EXPECT_EQ(dialog.focusWidget()->objectName(), QStringLiteral("cancelButton"));
            EXPECT_EQ(skip->nextInFocusChain(), dialog.focusWidget());
            QTest::mouseClick(skip, Qt::LeftButton);
            EXPECT_TRUE(wait.isSkipped);
            return false;
        }
        EXPECT_TRUE(subject->text().isEmpty() || !skip->isEnabled());
        return subject->text().isEmpty();
    });
    EXPECT_TRUE(wait.isSkipped);
    EXPECT_FALSE(wait.isCancelled);
    EXPECT_FALSE(loop_.waitDialog());
}

TEST_F(DesktopRunLoopTest, IsCancelledByItsButtonItsKeyAndItsWindowAndKeepsInputFromOthers)
{
    QPushButton other(QStringLiteral("Other"));
    bool isOtherPressed = false;
    QObject::connect(&other, &QPushButton::clicked, [&] { isOtherPressed = true; });
    other.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    const std::vector<std::function<void(WaitDialog &)>> ways = {
        [](WaitDialog &dialog) {
            QTest::mouseClick(dialog.findChild<QPushButton *>(QStringLiteral("cancelButton")),
                              Qt::LeftButton);
        },
        [](WaitDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); },
        [](WaitDialog &dialog) { dialog.close(); },
    };
    for (const auto &cancel : ways) {
        ScriptedWait wait;
        waitActing(wait, [&](WaitDialog &dialog) {
            QTest::mouseClick(other.windowHandle(), Qt::LeftButton, {}, other.rect().center());
            EXPECT_FALSE(
                dialog.findChild<QPushButton *>(QStringLiteral("skipButton"))->isEnabled());
            cancel(dialog);
            EXPECT_TRUE(dialog.isVisible()) << "until the wait has ended";
            return wait.isCancelled;
        });
        EXPECT_TRUE(wait.isCancelled);
        EXPECT_FALSE(isOtherPressed);
    }
}
} // namespace
