// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/BarButton.h"

#include <QToolButton>

QToolButton *barButton(const QString &text, const char *icon, const char *objectName)
{
    auto *const button = new QToolButton;
    button->setText(text);
    button->setAccessibleName(text);
    button->setIcon(QIcon::fromTheme(QLatin1String(icon)));
    button->setToolButtonStyle(button->icon().isNull() ? Qt::ToolButtonTextOnly
                                                       : Qt::ToolButtonTextBesideIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setObjectName(QLatin1String(objectName));
    return button;
}
