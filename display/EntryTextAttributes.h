// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryState.h"

#include <QtGlobal>

// The search result of an entry in the current plane.
enum FindState : quint32 {
    FindStateNone = 0,
    FindStateNotMatching = 1,
    FindStateMatching = 2,
    FindStateParentOfMatch = 3,
};

// The style of an entry's name. Views turn it into fonts and colours.
struct EntryTextAttributes
{
    enum class Color : quint8 { Text, LightGray, DarkGray, New, Terminated };

    static EntryTextAttributes forState(RegistryState registryState, FindState findState,
                                        bool isRootEntry);

    Color color = Color::Text;
    bool isBold = false;
    bool isSlanted = false;
    bool isUnderlined = false;
    bool isStruckOut = false;

    friend bool operator==(const EntryTextAttributes &, const EntryTextAttributes &) = default;
};
