// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/Stepper.h"

#include <QAbstractButton>

void Stepper::setUp()
{
    for (const QAbstractButton *button : findChildren<QAbstractButton *>()) {
        connect(button, &QAbstractButton::clicked, this, [this, button] {
            value_ = button->property("tag").toInt();
            Q_EMIT stepped();
        });
    }
}
