// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/CloseKeys.h"

#include <QShortcut>
#include <QWidget>

void CloseKeys::addTo(QWidget &panel, const QList<QKeySequence> &further)
{
    auto *const shortcut = new QShortcut(&panel);
    shortcut->setKeys(QKeySequence::keyBindings(QKeySequence::Close) + further);
    QObject::connect(shortcut, &QShortcut::activated, &panel, &QWidget::close);
}
