// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

// Buttons side by side, each of which sets a value when clicked: its property "tag" in the
// interface file.
class Stepper : public QWidget
{
    Q_OBJECT
public:
    using QWidget::QWidget;

    void setUp(); // call once, when the buttons exist
    int integerValue() const { return value_; }
    void setIntegerValue(int value) { value_ = value; }

Q_SIGNALS:
    void stepped(); // by the user

private:
    int value_ = 0;
};
