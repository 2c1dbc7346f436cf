// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

// Matches the nodes of a property tree to those of an older tree of the same entry: keys by name,
// elements of arrays and members of sets by position.
namespace PropertyCounterparts {
// For each child of the older node, the index of its counterpart among the newer node's children;
// -1: none.
std::vector<qsizetype> positionsOfChildren(const TavRegistryProperty &older,
                                           const TavRegistryProperty &newer);
// Null if the node is gone.
TavRegistryProperty *find(const TavRegistryProperty &older, TavRegistryProperty &newRoot);
// The index among its parent's children; the node must have a parent.
qsizetype position(const TavRegistryProperty &node);
} // namespace PropertyCounterparts
