#pragma once

#include <QCheckBox>

// Shows a state and looks like it: the box has a faint frame and no ground, follows no pointer and
// takes no keyboard, yet the mark and the text are as readable as any other. Only the program
// changes it.
class ReadOnlyCheckBox : public QCheckBox
{
    Q_OBJECT
public:
    explicit ReadOnlyCheckBox(QWidget *parent = nullptr);

protected:
    bool hitButton(const QPoint &position) const override;
    void nextCheckState() override;
    void paintEvent(QPaintEvent *event) override;
};
