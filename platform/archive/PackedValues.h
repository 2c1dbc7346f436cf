// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveValue.h"

#include <bit>

enum class PackedKind : quint8 {
    Absent,
    Null,
    False,
    True,
    Integer,         // payload: the value
    NegativeInteger, // payload: -1 - value
    Object,          // payload: index of the object
    String,          // payload: index
    Date,            // payload: index
    NewString,       // payload: index; written in full
    NewDate,         // payload: index; written in full
    Data,            // payload: index
    List,
    Dictionary,
    Number = 64, // payload: the bits; 64 to 67 and 72 to 75 encode width and sign
};

// Values packed into five bytes each: the archive of a large snapshot has tens of millions, and
// their size determines how long parsing takes.
class PackedValues
{
public:
    void reserve(std::size_t count)
    {
        kinds_.reserve(count);
        payloads_.reserve(count);
    }
    std::size_t size() const { return kinds_.size(); }
    PackedKind kind(std::size_t index) const { return kinds_[index]; }
    quint64 payload(std::size_t index) const
    {
        const quint32 payload = payloads_[index];
        return payload < isWide ? payload : wide_[payload - isWide];
    }
    // For ParsedArchive::elements: skips the contents of a container.
    std::size_t next(std::size_t index) const
    {
        return index + 1 + (isContainer(kind(index)) ? payload(index) : 0);
    }
    void setPayload(std::size_t index, quint64 payload) { payloads_[index] = packed(payload); }
    void add(PackedKind kind, quint64 payload = 0)
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

    static constexpr bool isContainer(PackedKind kind)
    {
        return kind == PackedKind::List || kind == PackedKind::Dictionary;
    }
    static constexpr bool isNumber(PackedKind kind) { return kind >= PackedKind::Number; }
    static PackedKind numberKind(int width, bool isSigned)
    {
        const int exponent = std::countr_zero(static_cast<unsigned>(width));
        return static_cast<PackedKind>(64 + (isSigned ? 8 : 0) + exponent);
    }
    static int numberWidth(PackedKind kind) { return 1 << (static_cast<int>(kind) & 3); }
    static bool isSignedNumber(PackedKind kind) { return static_cast<int>(kind) & 8; }

private:
    static constexpr quint32 isWide = quint32(1) << 31;

    quint32 packed(quint64 payload)
    {
        if (payload < isWide)
            return static_cast<quint32>(payload);
        wide_.push_back(payload);
        return isWide + static_cast<quint32>(wide_.size() - 1);
    }

    std::vector<PackedKind> kinds_;
    std::vector<quint32> payloads_;
    std::vector<quint64> wide_; // payloads of more than 31 bits
};
