#pragma once

#include "model/TavRegistryEntry.h"
#include "platform/archive/KeyedUnarchiver.h"

// Decodes the property trees of entries. Every node belongs to one place of one tree; an archive
// that says otherwise is refused.
class PropertyTreeDecoder
{
public:
    // The table that stands for the tree, or the tree of nodes of the class in use where it is one
    // that no table would make. Neither, and logged, when it cannot be decoded.
    struct Decoded
    {
        RegistryValue table;
        PropertyRef tree;
    };

    explicit PropertyTreeDecoder(KeyedUnarchiver &unarchiver);

    Decoded decode(ArchiveReference root, ArchiveReference entry, TavRegistryEntry &owner);

private:
    struct Node : PropertyFacts
    {
        ArchiveReference reference{};
        std::optional<std::size_t> parent; // among the nodes; none: the root
        quint32 depth = 0;
    };

    bool decodeNode(std::size_t index);
    bool decodeParent(const ArchivedObject &object, const Node &node);
    bool decodeIdent(const ArchivedObject &object, Node &node);
    bool decodeChildren(const ArchivedObject &object, std::size_t index);
    bool decodeValue(const ArchivedObject &object, Node &node);
    bool isOfTable(const Node &node) const; // as a table would make it
    RegistryValue makeTable();
    PropertyRef makeTree(TavRegistryEntry &owner) const;
    bool claim(ArchiveReference node);
    bool fail(const char *what, const char *reason);

    KeyedUnarchiver &unarchiver_;
    ArchiveReference entry_{};
    std::vector<Node> nodes_;     // each before its children, which lie one after another
    std::vector<bool> isClaimed_; // by object: it is a node of some tree already
};
