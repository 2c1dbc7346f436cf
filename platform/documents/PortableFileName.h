// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Turns the text into a file name that is valid on every file system and safe in a shell: "Ada's
// PC" becomes "Ada-s PC". Never empty.
QString portableFileName(const QString &text);
