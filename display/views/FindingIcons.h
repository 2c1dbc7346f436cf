// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/Severity.h"

#include <QColor>
#include <QIcon>

// The signs of findings: a disk for errors, a triangle for warnings, a square for notes. Only
// outlined, they stand for what is below an entry.
namespace FindingIcons {
enum class Kind : quint8 { Own, Below };

QColor color(Severity severity);
QIcon icon(Severity severity, Kind kind = Kind::Own);
// Another icon with the small sign in its corner; the sign alone where that is null.
QIcon badged(const QIcon &base, Severity severity, Kind kind);
} // namespace FindingIcons
