// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class QComboBox;

// Keeps a pop-up's last item, which customizes the list, from staying selected.
class EncodingPopUpButtonCell : public QObject
{
    Q_OBJECT
public:
    explicit EncodingPopUpButtonCell(QComboBox &popUp);

    void selectItemAtIndex(int index); // ignores the last item
    // Whether the last item was chosen since the last call.
    bool takeLastItemChosen() { return std::exchange(lastItemChosen_, false); }

private:
    void noteSelected(int index);

    QComboBox &popUp_;
    int selected_ = -1;
    bool lastItemChosen_ = false;
};
