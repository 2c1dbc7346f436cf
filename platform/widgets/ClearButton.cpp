// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ClearButton.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QToolButton>

void nameClearButton(const QLineEdit &field)
{
    const QString name = QCoreApplication::translate("ClearButton", "Clear");
    for (QToolButton *button : field.findChildren<QToolButton *>()) {
        button->setAccessibleName(name);
        button->setToolTip(name);
    }
}
