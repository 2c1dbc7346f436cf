// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/ArchiveSketch.h"

// An archive of two entries, as sketches to modify: a root whose properties have a value of each
// kind, and its child.
struct SmallStore
{
    enum Position { Store, Root, Child, RootTable, ChildTable, Text, List, Element };

    static ArchiveSketch current(); // of version 2
    static ArchiveSketch old();     // of version 1

    static ArchiveReference at(Position position) { return {static_cast<quint32>(position)}; }
    static ArchiveValue inPlane(const ArchiveValue &value)
    {
        return ArchiveDictionary{{QStringLiteral("DxService"), value}};
    }
};
