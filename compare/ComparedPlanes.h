// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class TavDataStore;

namespace ComparedPlanes {
inline const QString service = QStringLiteral("DxService"); // where each device has its place
// Those of either store, the service plane first.
QStringList of(const TavDataStore &before, const TavDataStore &after);
} // namespace ComparedPlanes
