#pragma once

#include "model/TavRegistryEntry.h"
#include "platform/KeyedUnarchiver.h"

// Decodes the property trees of entries into nodes of the class in use. Every node belongs to one
// place of one tree; an archive that says otherwise is refused.
class PropertyTreeDecoder
{
public:
    explicit PropertyTreeDecoder(KeyedUnarchiver &unarchiver);

    // Null, and logged, when the tree cannot be decoded.
    PropertyRef decode(ArchiveReference root, ArchiveReference entry, TavRegistryEntry &owner);

private:
    struct Pending
    {
        ArchiveReference reference;
        TavRegistryProperty *node;
        std::optional<ArchiveReference> parent;
    };

    bool decodeNode(Pending pending);
    bool decodeParent(const ArchivedObject &object, const Pending &pending);
    bool decodeIdent(const ArchivedObject &object, TavRegistryProperty &node, bool hasName);
    bool decodeChildren(const ArchivedObject &object, TavRegistryProperty &node);
    bool decodeValue(const ArchivedObject &object, TavRegistryProperty &node);
    bool claim(ArchiveReference node);
    bool fail(const char *what, const char *reason);

    KeyedUnarchiver &unarchiver_;
    ArchiveReference entry_{};
    std::vector<Pending> pending_;
    std::vector<bool> isClaimed_; // by object: it is a node of some tree already
};
