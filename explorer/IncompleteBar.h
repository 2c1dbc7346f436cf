// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFrame>
#include <QStringList>

class QLabel;
class QPushButton;

// The bar above the views that says which devices did not answer. Hidden while all do.
class IncompleteBar : public QFrame
{
    Q_OBJECT
public:
    IncompleteBar();

    // The message for a number of devices; null for none.
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
