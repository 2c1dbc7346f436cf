// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/CheckedCborReader.h"
#include "platform/archive/ParsedArchive.h"
#include "platform/archive/TextNumbering.h"

// Parses the values of an archive's objects.
class ArchiveValueParser
{
public:
    ArchiveValueParser(CheckedCborReader &cbor, ParsedArchive &archive);

    bool readInteger();
    bool readValue();
    quint64 maxReference() const { return maxReference_; }

private:
    struct Container
    {
        std::size_t start; // in elements
        bool isDictionary;
    };

    bool readElement();
    bool readItem(PackedValues &items);
    bool readReference(PackedValues &items);
    bool readSharedReference(PackedValues &items);
    bool readNewString(PackedValues &items);
    bool readTagged(PackedValues &items);
    bool readDate(PackedValues &items);
    bool readNumber(PackedValues &items, PackedKind kind);
    bool readData(PackedValues &items);
    bool readSimple(PackedValues &items);
    bool openContainer(PackedValues &items, PackedKind kind);
    bool closeContainer();
    bool hasDistinctKeys(std::size_t dictionary);

    CheckedCborReader &cbor_;
    ParsedArchive &archive_;
    std::vector<Container> open_;
    TextNumbering keyNumbers_;
    std::vector<quint64> keys_; // of the current dictionary; a member to reuse its memory
    quint64 maxReference_ = 0;
};
