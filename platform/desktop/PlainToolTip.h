#pragma once

#include <QString>

// Makes a tool tip show a text from outside as it is: never taken for markup, lines wrapped, cut
// when it is absurdly long.
QString plainToolTip(const QString &text);
