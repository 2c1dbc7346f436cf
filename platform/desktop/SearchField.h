#pragma once

#include <QLineEdit>
#include <QTimer>

// A field that asks for a search a moment after its text has changed, and at once on Return.
class SearchField : public QLineEdit
{
    Q_OBJECT
public:
    explicit SearchField(QWidget *parent = nullptr);

    void cancelPendingSearch() { delay_.stop(); }

Q_SIGNALS:
    void searchRequested();
    void cancelled(); // by Escape, which has emptied the field

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QTimer delay_;
};
