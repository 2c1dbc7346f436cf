// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCheckBox>

// A check box that only the program changes. Drawn with a faint frame, without hover or focus, but
// with a readable mark and text.
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
