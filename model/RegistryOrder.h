#pragma once

#include <QString>

// -1, 0, 1. "DxService" comes before every other plane; the rest without regard to case.
int compareRegistryPlaneForUI(const QString &a, const QString &b);
// The same for path strings: those that begin with "DxService" come first.
int compareRegistryPathForUI(const QString &a, const QString &b);
