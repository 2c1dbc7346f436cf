// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/FakeRegistryService.h"

// Makes registries of any size shaped like a real machine's: six planes, device subtrees about ten
// levels deep, containers with thousands of children, one entry in ten a driver binding, a few
// devices with several parents. The same parameters give the same registry.
class RegistryGenerator
{
public:
    struct Shape
    {
        quint32 entries = 1000;     // at least 100
        quint32 nodesPerEntry = 40; // of the property tree, including its root
        quint32 seed = 1;
    };

    static void generate(FakeRegistryService &registry, const Shape &shape);
};
