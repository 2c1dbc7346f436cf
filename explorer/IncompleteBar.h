#pragma once

#include <QFrame>
#include <QStringList>

class QLabel;
class QPushButton;

// Says above the views that some devices did not answer, so that what is shown is not whole. Hidden
// while all have.
class IncompleteBar : public QFrame
{
    Q_OBJECT
public:
    IncompleteBar();

    // What is to be said of so many devices; null for none.
    static QString message(qsizetype devices);

    // By their paths in sysfs. A snapshot cannot try again.
    void setObjects(const QStringList &paths, bool canTryAgain);

Q_SIGNALS:
    void tryAgainRequested();

private:
    void showList();

    QLabel *text_;
    QPushButton *tryAgainButton_;
    QStringList paths_;
};
