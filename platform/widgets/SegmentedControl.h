#pragma once

#include <QWidget>

class QAbstractButton;
class QButtonGroup;

// Buttons side by side of which one is down. Those of the interface file are the segments; the
// property "tag" of each is its number.
class SegmentedControl : public QWidget
{
    Q_OBJECT
public:
    explicit SegmentedControl(QWidget *parent = nullptr);

    void setUp(); // once, when the segments are there
    void selectSegmentWithTag(int tag);
    int selectedTag() const; // -1 for none

Q_SIGNALS:
    void segmentChosen(int tag); // by the user

protected:
    void changeEvent(QEvent *event) override;

private:
    void showSelection();

    QButtonGroup *segments_;
};
