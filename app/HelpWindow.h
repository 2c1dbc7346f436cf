// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/GuideView.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QToolButton;

// Shows the guide beside its table of contents, with a search field.
class HelpWindow : public QWidget
{
    Q_OBJECT
public:
    HelpWindow();
    void showHelp();

private:
    QBoxLayout *makeSearchBar();
    QToolButton *makeStepButton(const char *icon, const QString &name, int step);
    void setUpContents();
    void setUpKeys();
    void search();
    void step(int by);
    void showMatch();
    void endSearchOrClose();

    QLineEdit *searchField_;
    QLabel *searchStatus_;
    QListWidget *contents_;
    GuideView *guide_;
    std::vector<QToolButton *> stepButtons_;
    QList<QTextCursor> matches_; // of the search text
    qsizetype match_ = 0;        // the selected one
};
