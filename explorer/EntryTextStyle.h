// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/EntryTextAttributes.h"

#include <QVariant>

// The text attributes of an entry's name in the form of item views; invalid for the view's own.
namespace EntryTextStyle {
QVariant font(const EntryTextAttributes &attributes);
QVariant color(const EntryTextAttributes &attributes);
} // namespace EntryTextStyle
