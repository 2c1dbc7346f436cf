#pragma once

#include <QString>

// Makes a tool tip show a text from outside as it is: never taken for markup, lines wrapped,
// characters that control replaced by visible ones, cut when it is absurdly long.
QString plainToolTip(const QString &text);
