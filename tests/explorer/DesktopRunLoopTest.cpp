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
        RunLoop::main().wait([&](auto most) {
            QThread::usleep(static_cast<unsigned long>(most.count()) * 1000);
            wasShown = loop_.progress() && loop_.progress()->isVisible();
            if (wasShown) {
                EXPECT_GE(time.elapsed(), 500);
                EXPECT_EQ(loop_.progress()->parentWidget(), hasWindow ? window.get() : nullptr);
                window.reset();
            }
            return wasShown || time.elapsed() > 10'000;
        });
        EXPECT_TRUE(wasShown);
        EXPECT_FALSE(loop_.progress());
        EXPECT_TRUE(acts());
    }
}
} // namespace
