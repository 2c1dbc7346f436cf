// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QAbstractButton;
class QButtonGroup;

// Buttons side by side, one of which is down. The interface file numbers them with the property
// "tag".
class SegmentedControl : public QWidget
{
    Q_OBJECT
public:
    explicit SegmentedControl(QWidget *parent = nullptr);

    void setUp(); // call once, when the segments exist
    void selectSegmentWithTag(int tag);
    int selectedTag() const; // -1: none

Q_SIGNALS:
    void segmentChosen(int tag); // by the user

protected:
    void changeEvent(QEvent *event) override;

private:
    void showSelection();

    QButtonGroup *segments_;
};
