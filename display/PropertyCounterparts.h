#pragma once

#include "model/TavRegistryProperty.h"

// The nodes of a property tree that stand where those of an older tree of the same entry stood:
// keys by their name, elements of arrays and members of sets by their position.
namespace PropertyCounterparts {
// For each child of the older node, its counterpart's position among the newer node's children; -1
// where there is none.
std::vector<qsizetype> positionsOfChildren(const TavRegistryProperty &older,
                                           const TavRegistryProperty &newer);
// Null when the node is gone.
TavRegistryProperty *find(const TavRegistryProperty &older, TavRegistryProperty &newRoot);
// Among its parent's children; of a node that has a parent.
qsizetype position(const TavRegistryProperty &node);
} // namespace PropertyCounterparts
