#pragma once

#include <QKeySequence>
#include <QList>

class QWidget;

// Keys of the windows' menus do not reach a panel that has the keyboard.
namespace CloseKeys {
// The standard key, and that of the command by which the panel came.
void addTo(QWidget &panel, const QList<QKeySequence> &further = {});
} // namespace CloseKeys
