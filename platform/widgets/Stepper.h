#pragma once

#include <QWidget>

// Buttons side by side, each of which sets a value as it is clicked: the property "tag" of the
// button, as the interface file has it.
class Stepper : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    void setUp(); // once, when the buttons are there
    int integerValue() const { return value_; }
    void setIntegerValue(int value) { value_ = value; }

Q_SIGNALS:
    void stepped(); // by the user

private:
    int value_ = 0;
};
