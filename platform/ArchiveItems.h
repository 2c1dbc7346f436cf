#pragma once

#include "platform/ArchiveValue.h"

#include <bit>

enum class ArchiveItemKind : quint8 {
    Absent,
    Null,
    False,
    True,
    Integer,         // payload: the value
    NegativeInteger, // payload: -1 - value
    Object,          // payload: index of the object
    String,          // payload: index of the shared value
    Date,            // payload: index of the shared value
    Data,            // payload: index of the bytes
    List,
    Dictionary,
    Number = 64, // payload: the bits; 64 to 67 and 72 to 75 stand for width and sign
};

// Values packed to nine bytes each: an archive of a large snapshot has tens of millions.
class ArchiveItems
{
public:
    std::size_t size() const { return kinds_.size(); }
    ArchiveItemKind kind(std::size_t item) const { return kinds_[item]; }
    quint64 payload(std::size_t item) const { return payloads_[item]; }
    // For elements: the item after this one and all that is inside it.
    std::size_t next(std::size_t item) const
    {
        return item + 1 + (isContainer(kind(item)) ? payload(item) : 0);
    }
    void setPayload(std::size_t item, quint64 payload) { payloads_[item] = payload; }
    void add(ArchiveItemKind kind, quint64 payload = 0)
    {
        kinds_.push_back(kind);
        payloads_.push_back(payload);
    }
    void clear()
    {
        kinds_.clear();
        payloads_.clear();
    }

    static constexpr bool isContainer(ArchiveItemKind kind)
    {
        return kind == ArchiveItemKind::List || kind == ArchiveItemKind::Dictionary;
    }
    static constexpr bool isNumber(ArchiveItemKind kind) { return kind >= ArchiveItemKind::Number; }
    static ArchiveItemKind numberKind(int width, bool isSigned)
    {
        const int exponent = std::countr_zero(static_cast<unsigned>(width));
        return static_cast<ArchiveItemKind>(64 + (isSigned ? 8 : 0) + exponent);
    }
    static int numberWidth(ArchiveItemKind kind) { return 1 << (static_cast<int>(kind) & 3); }
    static bool isSignedNumber(ArchiveItemKind kind) { return static_cast<int>(kind) & 8; }

private:
    std::vector<ArchiveItemKind> kinds_;
    std::vector<quint64> payloads_;
};
