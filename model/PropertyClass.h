// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

class TavRegistryProperty;
class PropertyTree;

// The class of the nodes of a property tree. A tree allocates all its nodes in one block, so it
// needs their size and a way to construct one in place.
struct PropertyClass
{
    const PropertyClass *base;
    std::size_t size;
    TavRegistryProperty *(*construct)(void *storage, PropertyTree &tree);

    bool isKindOf(const PropertyClass &other) const
    {
        for (const PropertyClass *ancestor = this; ancestor; ancestor = ancestor->base) {
            if (ancestor == &other)
                return true;
        }
        return false;
    }
};
