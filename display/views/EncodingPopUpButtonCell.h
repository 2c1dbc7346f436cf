#pragma once

#include <QObject>

class QComboBox;

// Keeps the last item of a pop-up, the one to customize its list, from becoming the selected one.
class EncodingPopUpButtonCell : public QObject
{
    Q_OBJECT
public:
    explicit EncodingPopUpButtonCell(QComboBox &popUp);

    void selectItemAtIndex(int index); // not carried out for the last item
    // Whether the last item was chosen since the last call.
    bool takeLastItemChosen() { return std::exchange(lastItemChosen_, false); }

private:
    void noteSelected(int index);

    QComboBox &popUp_;
    int selected_ = -1;
    bool lastItemChosen_ = false;
};
