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
    struct Node
    {
        ArchiveReference reference;
        std::optional<std::size_t> parent; // of the nodes; none: the root
        quint32 depth = 0;
        quint32 childCount = 0;
        std::size_t firstChild = 0; // of the nodes
        RegistryState state = RegistryStateUnchanged;
        RegistryValue::Type type = RegistryValue::Type::None;
        bool hasName = false;
        bool isCollection = false;
        CompactString name;
        RegistryValue value;
    };

    bool decodeNode(std::size_t index);
    bool decodeParent(const ObjectDecoder &object, const Node &node);
    bool decodeIdent(const ObjectDecoder &object, Node &node);
    bool decodeChildren(const ObjectDecoder &object, std::size_t index);
    bool decodeValue(const ObjectDecoder &object, Node &node);
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
