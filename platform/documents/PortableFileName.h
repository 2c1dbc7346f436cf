#pragma once

#include <QString>

// The text as the name of a file that every file system takes and no shell trips over: "Ada's PC"
// is "Ada-s PC". Never empty.
QString portableFileName(const QString &text);
