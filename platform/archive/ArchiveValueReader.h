#pragma once

#include "platform/archive/ArchiveInput.h"
#include "platform/archive/ArchiveTable.h"
#include "platform/archive/ArchiveTextNumbers.h"

// Reads the values of an archive's objects into its table.
class ArchiveValueReader
{
public:
    ArchiveValueReader(ArchiveInput &input, ArchiveTable &table);

    bool readInteger();
    bool readValue();
    quint64 highestReference() const { return highestReference_; }

private:
    struct Container
    {
        std::size_t start; // in elements
        bool isDictionary;
    };

    bool readElement();
    bool readItem(ArchiveItems &items);
    bool readReference(ArchiveItems &items);
    bool readSharedReference(ArchiveItems &items);
    bool readNewString(ArchiveItems &items);
    bool readTagged(ArchiveItems &items);
    bool readDate(ArchiveItems &items);
    bool readNumber(ArchiveItems &items, ArchiveItemKind kind);
    bool readData(ArchiveItems &items);
    bool readSimple(ArchiveItems &items);
    bool openContainer(ArchiveItems &items, ArchiveItemKind kind);
    bool closeContainer();
    bool hasDistinctKeys(std::size_t dictionary);

    ArchiveInput &input_;
    CborReader &cbor_;
    ArchiveTable &table_;
    std::vector<Container> open_;
    ArchiveTextNumbers keyNumbers_;
    std::vector<quint64> keys_; // of the dictionary that is looked at
    quint64 highestReference_ = 0;
};
