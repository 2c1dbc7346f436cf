#include "platform/desktop/DesktopRunLoop.h"
#include "platform/OneShotTimer.h"
#include "tests/support/EventLoop.h"

#include <QApplication>
#include <QDialog>
#include <QMenu>
#include <QProgressDialog>
#include <QTest>
#include <QThread>
#include <gtest/gtest.h>

namespace {
class DesktopRunLoopTest : public testing::Test
{
protected:
    // Whether a timer that is due acts.
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

TEST_F(DesktopRunLoopTest, LongWaitIsShown)
{
    QElapsedTimer time;
    time.start();
    bool wasShown = false;
    RunLoop::main().wait([&](auto most) {
        QThread::usleep(static_cast<unsigned long>(most.count()) * 1000);
        const bool isShown = loop_.progress() && loop_.progress()->isVisible();
        EXPECT_FALSE(isShown && time.elapsed() < 500);
        wasShown = wasShown || isShown;
        return wasShown || time.elapsed() > 10'000;
    });
    EXPECT_TRUE(wasShown);
    EXPECT_FALSE(loop_.progress());
    EXPECT_TRUE(acts());
}

TEST_F(DesktopRunLoopTest, ShownWaitSurvivesItsWindow)
{
    auto window = std::make_unique<QWidget>();
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    RunLoop::main().wait([&](auto most) {
        QThread::usleep(static_cast<unsigned long>(most.count()) * 1000);
        if (!loop_.progress())
            return false;
        EXPECT_EQ(loop_.progress()->parentWidget(), window.get());
        window.reset();
        return true;
    });
    EXPECT_FALSE(loop_.progress());
}
} // namespace
