// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Replaces a control character, or one that changes the writing direction, by a visible one.
QChar visibleCharacter(QChar character);
// The length and all positions stay the same.
QString visibleCharacters(const QString &text);
// Shortens a longer text with an ellipsis.
QString cutText(const QString &text, qsizetype maxLength);
// Prepares a text for one line: visible characters and a maximum length.
QString visibleText(const QString &text);
