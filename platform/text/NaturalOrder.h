// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringView>

// Orders texts as people count: "sda2" before "sda10", and "1f.0" after "14.0" as in addresses.
// Case-insensitive and independent of the locale. Negative, 0 or positive; 0 for texts that differ
// only in case and in leading zeros.
int compareNaturally(QStringView a, QStringView b);
