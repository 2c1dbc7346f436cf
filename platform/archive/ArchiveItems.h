#pragma once

#include "platform/archive/ArchiveValue.h"

#include <bit>

enum class ArchiveItemKind : quint8 {
    Absent,
    Null,
    False,
    True,
    Integer,         // payload: the value
    NegativeInteger, // payload: -1 - value
    Object,          // payload: index of the object
    String,          // payload: which one
    Date,            // payload: which one
    NewString,       // payload: which one; to be written out in full
    NewDate,         // likewise
    Data,            // payload: which one
    List,
    Dictionary,
    Number = 64, // payload: the bits; 64 to 67 and 72 to 75 stand for width and sign
};

// Values packed to five bytes each: an archive of a large snapshot has tens of millions, and their
// size decides how long reading it takes.
class ArchiveItems
{
public:
    void reserve(std::size_t count)
    {
        kinds_.reserve(count);
        payloads_.reserve(count);
    }
    std::size_t size() const { return kinds_.size(); }
    ArchiveItemKind kind(std::size_t item) const { return kinds_[item]; }
    quint64 payload(std::size_t item) const
    {
        const quint32 payload = payloads_[item];
        return payload < isWide ? payload : wide_[payload - isWide];
    }
    // For elements: the item after this one and all that is inside it.
    std::size_t next(std::size_t item) const
    {
        return item + 1 + (isContainer(kind(item)) ? payload(item) : 0);
    }
    void setPayload(std::size_t item, quint64 payload) { payloads_[item] = packed(payload); }
    void add(ArchiveItemKind kind, quint64 payload = 0)
    {
        kinds_.push_back(kind);
        payloads_.push_back(packed(payload));
    }
    void clear()
    {
        kinds_.clear();
        payloads_.clear();
        wide_.clear();
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
    static constexpr quint32 isWide = quint32(1) << 31;

    quint32 packed(quint64 payload)
    {
        if (payload < isWide)
            return static_cast<quint32>(payload);
        wide_.push_back(payload);
        return isWide + static_cast<quint32>(wide_.size() - 1);
    }

    std::vector<ArchiveItemKind> kinds_;
    std::vector<quint32> payloads_;
    std::vector<quint64> wide_; // the payloads that do not fit
};
