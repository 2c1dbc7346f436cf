// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLabel>

class QPushButton;

// Shows in the middle of a view why it is empty. Hidden at first.
class ViewNote : public QLabel
{
    Q_OBJECT
public:
    // Placed above the view in the same parent, which owns it.
    ViewNote(const QString &text, QWidget &view);

    // Adds a button below the text, with the title and the tool tip of another one. It is shown
    // with the note while it is offered.
    void addButton(const QPushButton &like);
    QPushButton *button() const { return button_; }
    void offerButton(bool isOffered);

    void setVisible(bool visible) override;
    bool eventFilter(QObject *view, QEvent *event) override;

private:
    void placeButton();

    QWidget &view_;
    QPushButton *button_ = nullptr;
    bool isButtonOffered_ = false;
};
