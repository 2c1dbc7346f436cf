// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QtGlobal>

// The change of an entry or property node since marks were last cleared.
enum RegistryState : quint32 {
    RegistryStateUnchanged = 0,
    RegistryStateNew = 1,
    RegistryStateChanged = 2, // property nodes only
    RegistryStateTerminated = 3,
};
