// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/ScreenBounds.h"
#include "platform/desktop/FloatingPanel.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QScrollArea>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {
QRect screen()
{
    return QGuiApplication::primaryScreen()->availableGeometry();
}

TEST(ScreenBoundsTest, AWindowOpensNoLargerThanItsScreen)
{
    QWidget window;
    new ScreenBounds(window);
    window.resize(5000, 300);
    window.show();
    EXPECT_EQ(window.height(), 300);
    EXPECT_LE(window.width(), screen().width());
}

TEST(ScreenBoundsTest, WhatHasTooLittleRoomCanBeScrolled)
{
    for (const auto constraint : {QLayout::SetDefaultConstraint, QLayout::SetFixedSize}) {
        QDialog dialog;
        auto *const layout = new QVBoxLayout(&dialog);
        layout->setSizeConstraint(constraint);
        auto *const field = new QLineEdit;
        auto *const tall = new QLabel(QStringLiteral("tall"));
        auto *const last = new QLineEdit;
        tall->setMinimumHeight(3000);
        for (QWidget *widget : std::initializer_list<QWidget *>{field, tall, last})
            layout->addWidget(widget);
        new ScreenBounds(dialog);
        dialog.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        EXPECT_LE(dialog.height(), screen().height());
        EXPECT_GE(dialog.findChild<QScrollArea *>()->viewport()->width(),
                  field->sizeHint().width());
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Tab); // scrolls there
        ASSERT_TRUE(last->hasFocus());
        EXPECT_TRUE(dialog.rect().contains(last->mapTo(&dialog, last->rect().center())));
    }
}

TEST(ScreenBoundsTest, APanelOpensBesideTheWindowInUseAndInsideTheScreen)
{
    QWidget window;
    QWidget panel;
    FloatingPanel::prepare(panel);
    panel.resize(200, 300);
    window.resize(300, 100);
    window.move(screen().bottomRight() - QPoint(300, 100));
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    FloatingPanel::makeKey(panel);
    EXPECT_FALSE(panel.frameGeometry().intersects(window.frameGeometry()));
    EXPECT_TRUE(screen().contains(panel.frameGeometry()));
}
} // namespace
