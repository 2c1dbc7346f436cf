// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/EntryKind.h"

#include <QColor>
#include <QIcon>
#include <array>

// The icons of entries by kind, in the colours of the theme's text. Always our own: the icons of
// desktop themes for such things differ in colour and weight, which is restless in a long list.
class EntryIcons
{
public:
    static constexpr int size = 16;

    static EntryIcons &shared(); // by all views; follows the theme

    QIcon iconOf(const TavRegistryEntry &entry) { return icon(entryKind(entry)); }
    QIcon icon(EntryKind kind);

private:
    struct Colors
    {
        QRgb plain = 0;
        QRgb selected = 0; // on a selected row
        friend bool operator==(const Colors &, const Colors &) = default;
    };

    static Colors currentColors();
    static QByteArray drawing(EntryKind kind);
    QIcon draw(EntryKind kind) const;

    Colors colors_;
    std::array<QIcon, static_cast<std::size_t>(EntryKind::Count)> icons_; // null: not drawn yet
};
