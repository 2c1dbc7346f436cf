// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ReadableColor.h"
#include "display/views/EntryColors.h"
#include "platform/desktop/Theme.h"
#include "tests/support/QtPrinters.h"

#include <QApplication>
#include <gtest/gtest.h>

TEST(ReadableColorTest, TextOfWhatCameAndWentIsReadableInBothThemes)
{
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21.0, 1e-6);
    EXPECT_NEAR(contrast(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01); // as published
    const QPalette before = QApplication::palette();
    for (const Theme theme : {Theme::Dark, Theme::Light}) {
        applyTheme(theme);
        const QPalette palette = QApplication::palette();
        for (const QColor &color :
             {EntryColors::colorForTerminatedItem(), EntryColors::colorForParentOfTerminatedItem(),
              EntryColors::colorForNonmatchingTerminatedItem(), EntryColors::colorForNewItem(),
              EntryColors::colorForParentOfNewItem(), EntryColors::colorForNonmatchingNewItem()}) {
            const QColor drawn = readableColor(color, palette);
            for (const auto role : {QPalette::Base, QPalette::AlternateBase}) {
                EXPECT_GE(contrast(drawn, palette.color(role)), 4.5) << color.name().toStdString();
                // As close to the colour as possible.
                EXPECT_TRUE(drawn == color || contrast(drawn, palette.color(role)) < 5.2)
                    << color.name().toStdString();
            }
            EXPECT_NEAR(drawn.hslHueF(), color.hslHueF(), 0.02) << color.name().toStdString();
        }
        EXPECT_GE(
            contrast(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)),
            4.5);
    }
    QApplication::setPalette(before);
    QPalette grey = before; // only black and white are readable on it
    grey.setColor(QPalette::Base, Qt::gray);
    grey.setColor(QPalette::AlternateBase, Qt::gray);
    EXPECT_GE(contrast(readableColor(Qt::gray, grey), Qt::gray), 4.5);
}
