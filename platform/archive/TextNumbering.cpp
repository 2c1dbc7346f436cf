// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/TextNumbering.h"

quint64 TextNumbering::number(quint64 index, QStringView text)
{
    if (index >= numbers_.size())
        numbers_.resize(index + 1);
    quint64 &number = numbers_[index];
    if (number == 0) {
        quint64 &ofText = byText_[text];
        if (ofText == 0)
            ofText = static_cast<quint64>(byText_.size());
        number = ofText;
    }
    return number;
}
