// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/EntryKind.h"

#include <QColor>
#include <QIcon>
#include <array>

// The icons of entries by kind: the desktop's symbolic icon, or our own where its theme has none.
// All in the pale colour of the theme's text, since a long list of coloured icons is restless.
class EntryIcons
{
public:
    static constexpr int size = 16;

    static EntryIcons &shared(); // by all views; follows the theme

    QIcon iconOf(const TavRegistryEntry &entry) { return icon(entryKind(entry)); }
    QIcon icon(EntryKind kind);

private:
    struct Style
    {
        QString theme = {}; // of icons
        QRgb plain = 0;
        QRgb selected = 0; // on a selected row
        friend bool operator==(const Style &, const Style &) = default;
    };

    static Style currentStyle();
    static QByteArray drawing(EntryKind kind);
    QIcon draw(EntryKind kind) const;

    Style style_;
    std::array<QIcon, static_cast<std::size_t>(EntryKind::Count)> icons_; // null: not drawn yet
};
