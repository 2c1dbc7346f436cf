// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveValue.h"
#include "platform/archive/ParsedArchive.h"

#include <optional>

// A read-only view of a value in a parsed archive, which must outlive it.
class ArchiveValueView
{
public:
    ArchiveValueView(const ParsedArchive &archive, PackedKind kind, quint64 payload)
        : archive_(&archive)
        , payload_(payload)
        , kind_(kind)
    {}

    bool isAbsent() const { return kind_ == PackedKind::Absent; }
    bool isList() const { return kind_ == PackedKind::List; }
    bool isDictionary() const { return kind_ == PackedKind::Dictionary; }
    const QString *string() const // null: not a string
    {
        return kind_ == PackedKind::String ? &archive_->string(payload_) : nullptr;
    }
    std::optional<ArchiveReference> reference() const
    {
        if (kind_ != PackedKind::Object)
            return std::nullopt;
        return ArchiveReference{static_cast<quint32>(payload_)};
    }
    // Equal for strings that the archive shares.
    quint64 identity() const { return payload_; }

    // Visits a list's elements or a dictionary's keys and values in writing order until the
    // action returns false. Returns whether it visited all.
    template<class Action>
    bool forEachElement(Action action) const
    {
        const PackedValues &items = archive_->elements;
        const std::size_t end = items.next(payload_);
        for (std::size_t item = payload_ + 1; item < end; item = items.next(item)) {
            if (!action(element(item)))
                return false;
        }
        return true;
    }
    template<class Action>
    bool forEachMember(Action action) const
    {
        const PackedValues &items = archive_->elements;
        const std::size_t end = items.next(payload_);
        for (std::size_t key = payload_ + 1; key < end; key = items.next(key + 1)) {
            if (!action(archive_->string(items.payload(key)), element(key + 1)))
                return false;
        }
        return true;
    }

private:
    ArchiveValueView element(std::size_t item) const
    {
        const PackedKind kind = archive_->elements.kind(item);
        return {*archive_, kind,
                PackedValues::isContainer(kind) ? item : archive_->elements.payload(item)};
    }

    const ParsedArchive *archive_;
    quint64 payload_;
    PackedKind kind_;
};
