// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QKeySequence>
#include <QList>

class QWidget;

// Closing panels by keys, as the windows' menu keys do not work in a panel.
namespace CloseKeys {
// Adds the standard close key, and the key of the command that opened the panel.
void addTo(QWidget &panel, const QList<QKeySequence> &further = {});
} // namespace CloseKeys
