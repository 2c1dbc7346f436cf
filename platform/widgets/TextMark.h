// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

class QLineEdit;

// Marks a part of a field's text as wrong; a length of 0 removes the mark.
void markText(QLineEdit &field, qsizetype start, qsizetype length);
