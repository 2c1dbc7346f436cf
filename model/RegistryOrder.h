// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// -1, 0, 1. "DxService" comes first; the others are compared case-insensitively.
int compareRegistryPlaneForUI(const QString &a, const QString &b);
// The same for path strings.
int compareRegistryPathForUI(const QString &a, const QString &b);
