#pragma once

#include <QtGlobal>

// What became of an entry or a property node since the last time marks were cleared.
enum RegistryState : quint32 {
    RegistryStateUnchanged = 0,
    RegistryStateNew = 1,
    RegistryStateChanged = 2, // property nodes only
    RegistryStateTerminated = 3,
};
