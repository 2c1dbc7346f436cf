// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QFrame>

class ComparisonDocument;
class QCheckBox;
class QLabel;

// The bar below the views of a comparison: how much differs, what of it is shown, and the steps
// through it.
class ComparisonBar : public QFrame
{
    Q_OBJECT
public:
    explicit ComparisonBar(ComparisonDocument &document); // which must outlive this

    bool showsOnlyDifferences() const;
    void update(); // after the comparison has changed

Q_SIGNALS:
    void filterChanged();
    void nextRequested();
    void previousRequested();

private:
    void askForIgnoredKeys();

    ComparisonDocument &document_;
    QLabel *summary_;
    QCheckBox *onlyDifferences_;
    QCheckBox *volatile_;
};
