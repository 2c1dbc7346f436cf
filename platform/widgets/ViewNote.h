#pragma once

#include <QLabel>

// Says in the middle of a view why it has nothing to show. Hidden at first.
class ViewNote : public QLabel
{
    Q_OBJECT
public:
    // Stands above the view in the same parent, which owns it.
    ViewNote(const QString &text, QWidget &view);

    bool eventFilter(QObject *view, QEvent *event) override;

private:
    QWidget &view_;
};
