// SPDX-License-Identifier: Apache-2.0
#include "explorer/EntryTextStyle.h"

#include "display/views/EntryColors.h"
#include "platform/widgets/ReadableColor.h"

#include <QColor>
#include <QFont>
#include <QGuiApplication>
#include <QPalette>

QVariant EntryTextStyle::color(const EntryTextAttributes &attributes)
{
    using Color = EntryTextAttributes::Color;
    switch (attributes.color) {
    case Color::Text:
        return {};
    case Color::LightGray:
        return QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text);
    case Color::DarkGray:
        return QGuiApplication::palette().color(QPalette::PlaceholderText);
    case Color::New:
        return readableColor(EntryColors::colorForNewItem(), QGuiApplication::palette());
    case Color::Terminated:
        return readableColor(EntryColors::colorForTerminatedItem(), QGuiApplication::palette());
    }
    return {};
}

QVariant EntryTextStyle::font(const EntryTextAttributes &attributes)
{
    if (!attributes.isBold && !attributes.isSlanted && !attributes.isUnderlined &&
        !attributes.isStruckOut)
        return {};
    QFont font;
    font.setBold(attributes.isBold);
    font.setItalic(attributes.isSlanted);
    font.setUnderline(attributes.isUnderlined);
    font.setStrikeOut(attributes.isStruckOut);
    return font;
}
