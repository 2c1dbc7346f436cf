// SPDX-License-Identifier: Apache-2.0
#include "app/PopUpItem.h"

#include <QComboBox>

namespace {
constexpr int tagRole = Qt::UserRole + 1;
} // namespace

void PopUpItem::addMarker(QComboBox &popUp)
{
    popUp.insertSeparator(popUp.count());
    popUp.setItemData(popUp.count() - 1, markerTag, tagRole);
}

void PopUpItem::removeItemsAfterMarker(QComboBox &popUp)
{
    const int marker = popUp.findData(markerTag, tagRole);
    while (marker >= 0 && popUp.count() > marker + 1)
        popUp.removeItem(popUp.count() - 1);
}
