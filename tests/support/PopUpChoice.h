#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>

// As a user does, in the open list.
inline void chooseInList(QComboBox &popUp, int item)
{
    popUp.showPopup();
    popUp.view()->setCurrentIndex(popUp.model()->index(item, popUp.modelColumn()));
    QTest::keyClick(popUp.view(), Qt::Key_Return);
}
