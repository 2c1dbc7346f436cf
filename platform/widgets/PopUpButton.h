#pragma once

#include <QComboBox>

// A pop-up whose choices take effect: one made in the open list at once, one stepped to with the
// keys only on Return or when the keyboard leaves. Escape goes back to the last choice.
class PopUpButton : public QComboBox
{
    Q_OBJECT
public:
    explicit PopUpButton(QWidget *parent = nullptr);

    // To be called when the program, not the user, has chosen what is shown.
    void settle();
    void commit(); // what was stepped to
    // Whether the user is about to choose: has stepped to another item, or opened the list.
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
