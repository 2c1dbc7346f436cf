// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>

// Chooses like a user, in the open list.
inline void chooseInList(QComboBox &popUp, int item)
{
    popUp.showPopup();
    popUp.view()->setCurrentIndex(popUp.model()->index(item, popUp.modelColumn()));
    QTest::keyClick(popUp.view(), Qt::Key_Return);
}
