#pragma once

#include "tests/support/FakeRegistryService.h"

// Makes registries of any size in the shape of a real machine's: six planes, device subtrees some
// ten levels deep, containers with thousands of children, one entry in ten a driver's binding, a
// few devices with several parents. The same shape gives the same registry.
class RegistryGenerator
{
public:
    struct Shape
    {
        quint32 entries = 1000;     // at least 100
        quint32 nodesPerEntry = 40; // of the property tree, its root counted
        quint32 seed = 1;
    };

    static void generate(FakeRegistryService &registry, const Shape &shape);
};
