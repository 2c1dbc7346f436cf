// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Prepares untrusted text for a tool tip: not read as markup, with wrapped lines, visible
// replacements for control characters, and a maximum length.
QString plainToolTip(const QString &text);
