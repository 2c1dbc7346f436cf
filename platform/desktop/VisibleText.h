#pragma once

#include <QString>

// A text from outside as one line can show it: control characters and those that turn the writing
// direction are replaced by visible ones, and what is absurdly long is cut.
QString visibleText(const QString &text);
