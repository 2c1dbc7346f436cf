// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QComboBox>

// A pop-up whose choices take effect: immediately in the open list; with keys only on Return or
// when the focus leaves. Escape returns to the last choice.
class PopUpButton : public QComboBox
{
    Q_OBJECT
public:
    explicit PopUpButton(QWidget *parent = nullptr);

    // Call this when the program, not the user, has set the selection.
    void settle();
    void commit(); // applies the item stepped to
    // Whether the user is choosing: has stepped to another item or opened the list.
    bool isChoosing() const;

Q_SIGNALS:
    void chosen(); // by the user

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    virtual void noteActivated(); // in the open list

private:
    bool hasStepped() const { return currentIndex() != settledIndex_; }

    int settledIndex_ = -1;
    bool isStepping_ = false;
};
