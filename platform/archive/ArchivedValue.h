#pragma once

#include "platform/archive/ArchiveTable.h"
#include "platform/archive/ArchiveValue.h"

#include <optional>

// A value where it lies in an archive, without a copy. A light value; the archive must outlive it.
class ArchivedValue
{
public:
    ArchivedValue(const ArchiveTable &table, ArchiveItemKind kind, quint64 payload)
        : table_(&table)
        , payload_(payload)
        , kind_(kind)
    {}

    bool isAbsent() const { return kind_ == ArchiveItemKind::Absent; }
    bool isList() const { return kind_ == ArchiveItemKind::List; }
    bool isDictionary() const { return kind_ == ArchiveItemKind::Dictionary; }
    const QString *string() const // null: none
    {
        return kind_ == ArchiveItemKind::String ? &table_->string(payload_) : nullptr;
    }
    std::optional<ArchiveReference> reference() const
    {
        if (kind_ != ArchiveItemKind::Object)
            return std::nullopt;
        return ArchiveReference{static_cast<quint32>(payload_)};
    }
    // A number that is the same for strings written as one.
    quint64 identity() const { return payload_; }

    // The elements of a list, and the keys and values of a dictionary, in writing order, until the
    // action says false; whether it never did.
    template<class Action>
    bool forEachElement(Action action) const
    {
        const ArchiveItems &items = table_->elements;
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
        const ArchiveItems &items = table_->elements;
        const std::size_t end = items.next(payload_);
        for (std::size_t key = payload_ + 1; key < end; key = items.next(key + 1)) {
            if (!action(table_->string(items.payload(key)), element(key + 1)))
                return false;
        }
        return true;
    }

private:
    ArchivedValue element(std::size_t item) const
    {
        const ArchiveItemKind kind = table_->elements.kind(item);
        return {*table_, kind,
                ArchiveItems::isContainer(kind) ? item : table_->elements.payload(item)};
    }

    const ArchiveTable *table_;
    quint64 payload_;
    ArchiveItemKind kind_;
};
