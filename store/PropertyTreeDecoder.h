// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntry.h"
#include "platform/archive/KeyedUnarchiver.h"

// Decodes the property trees of entries. Refuses archives in which a node has more than one place.
class PropertyTreeDecoder
{
public:
    // The table that makes the tree, or else the tree itself, of the node class in use. Neither,
    // and logged, on failure.
    struct Decoded
    {
        RegistryValue table;
        PropertyRef tree;
    };

    explicit PropertyTreeDecoder(KeyedUnarchiver &unarchiver);

    Decoded decode(ArchiveReference root, ArchiveReference entry, TavRegistryEntry &owner);

private:
    struct Node : PropertyRecord
    {
        ArchiveReference reference{};
        std::optional<std::size_t> parent; // index; none: the root
        quint32 depth = 0;
    };

    bool decodeNode(std::size_t index);
    bool decodeParent(const ObjectDecoder &object, const Node &node);
    bool decodeIdent(const ObjectDecoder &object, Node &node);
    bool decodeChildren(const ObjectDecoder &object, std::size_t index);
    bool decodeValue(const ObjectDecoder &object, Node &node);
    bool decodeNotation(const ObjectDecoder &object, Node &node);
    bool isOfTable(const Node &node) const; // as built from a table
    RegistryValue makeTable();
    PropertyRef makeTree(TavRegistryEntry &owner) const;
    bool claim(ArchiveReference node);
    bool fail(const char *what, const char *reason);

    KeyedUnarchiver &unarchiver_;
    ArchiveReference entry_{};
    std::vector<Node> nodes_;     // parents before children, siblings consecutive
    std::vector<bool> isClaimed_; // by archive object: already a node of a tree
};
