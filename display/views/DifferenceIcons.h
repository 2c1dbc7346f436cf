// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/EntryDifference.h"

#include <QColor>
#include <QIcon>

// Signs and colours for what happened to an entry or a property, in the colours of the theme.
namespace DifferenceIcons {
inline constexpr int size = 16;

QIcon icon(DifferenceKind kind); // null for one that is the same
QColor color(DifferenceKind kind);
// Of a noted property: new, terminated (gone) or changed.
QIcon ofState(RegistryState state);
QColor colorOfState(RegistryState state);
} // namespace DifferenceIcons
