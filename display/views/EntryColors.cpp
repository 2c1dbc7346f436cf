// SPDX-License-Identifier: Apache-2.0
#include "display/views/EntryColors.h"

namespace {
constexpr float red = 0.0F;
constexpr float green = 0.33F;
constexpr float orange = 0.09F;
} // namespace

QColor EntryColors::colorForTerminatedItem()
{
    return Qt::red;
}

QColor EntryColors::colorForParentOfTerminatedItem()
{
    return QColor::fromHsvF(red, 0.67F, 1.0F);
}

QColor EntryColors::colorForNonmatchingTerminatedItem()
{
    return QColor::fromHsvF(red, 0.33F, 1.0F);
}

QColor EntryColors::colorForNewItem()
{
    return QColor::fromHsvF(green, 1.0F, 0.67F);
}

QColor EntryColors::colorForParentOfNewItem()
{
    return QColor::fromHsvF(green, 0.5F, 0.8F);
}

QColor EntryColors::colorForNonmatchingNewItem()
{
    return QColor::fromHsvF(green, 0.33F, 0.9F);
}

QColor EntryColors::colorForChangedItem()
{
    return QColor::fromHsvF(orange, 1.0F, 0.85F);
}
