// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class TavDataStore;

// The keys of all properties in a store, those below others as paths such as "power/control"; for
// completion. Sorted; at most about 20,000.
QStringList keysOccurring(const TavDataStore &store);
