// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QLineEdit>
#include <QTimer>

// A field that requests a search shortly after its text changes, and immediately on Return.
class SearchField : public QLineEdit
{
    Q_OBJECT
public:
    explicit SearchField(QWidget *parent = nullptr);

    void cancelPendingSearch() { delay_.stop(); }
    void cancelSearch(); // and empties the field, as Escape does
    static constexpr int textLength = 30;
    void setCharacters(int count);   // to have in sight where there is room
    QSize sizeHint() const override; // the same whether there is anything to clear or not

Q_SIGNALS:
    void searchRequested();
    void cancelled(); // the field is empty by now

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QTimer delay_;
    int characters_ = textLength;
};
