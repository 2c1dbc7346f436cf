// SPDX-License-Identifier: Apache-2.0
#include "display/views/EncodingPopUpButtonCell.h"

#include <QComboBox>

EncodingPopUpButtonCell::EncodingPopUpButtonCell(QComboBox &popUp)
    : popUp_(popUp)
{
    connect(&popUp, &QComboBox::currentIndexChanged, this, &EncodingPopUpButtonCell::noteSelected);
}

void EncodingPopUpButtonCell::selectItemAtIndex(int index)
{
    if (index + 2 > popUp_.count())
        return;
    selected_ = index;
    popUp_.setCurrentIndex(index);
}

// The selection changes before it can be refused, so it is reverted.
void EncodingPopUpButtonCell::noteSelected(int index)
{
    if (index + 2 <= popUp_.count()) {
        selected_ = index;
        return;
    }
    lastItemChosen_ = true;
    popUp_.setCurrentIndex(selected_);
}
