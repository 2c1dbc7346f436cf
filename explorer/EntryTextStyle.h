#pragma once

#include "display/EntryTextAttributes.h"

#include <QVariant>

// The text attributes of an entry's name as item views take them; none where the view's own apply.
namespace EntryTextStyle {
QVariant font(const EntryTextAttributes &attributes);
QVariant color(const EntryTextAttributes &attributes);
} // namespace EntryTextStyle
