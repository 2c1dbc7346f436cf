// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <variant>
#include <vector>

struct ArchiveReference
{
    quint32 index; // of the object in the archive
    friend bool operator==(const ArchiveReference &, const ArchiveReference &) = default;
};

// An integer of stated width: 1, 2, 4 or 8 bytes. Bits above the width are zero.
struct ArchiveNumber
{
    quint64 bits;
    int width;
    bool isSigned;
    friend bool operator==(const ArchiveNumber &, const ArchiveNumber &) = default;
};

struct ArchiveNull
{
    friend bool operator==(const ArchiveNull &, const ArchiveNull &) = default;
};

struct ArchiveValue;
struct ArchiveMember;
using ArchiveList = std::vector<ArchiveValue>;
using ArchiveDictionary = std::vector<ArchiveMember>; // in writing order, no key twice

// A value under a key or in a list; the monostate stands for an absent one.
struct ArchiveValue
    : std::variant<std::monostate, ArchiveNull, bool, ArchiveNumber, QString, QByteArray, QDateTime,
                   ArchiveReference, ArchiveList, ArchiveDictionary>
{
    using variant::variant;

    template<class T>
    const T *get() const
    {
        return std::get_if<T>(this);
    }
    bool isAbsent() const { return index() == 0; }
};

struct ArchiveMember
{
    QString key;
    ArchiveValue value;
};

inline bool operator==(const ArchiveMember &a, const ArchiveMember &b)
{
    return a.key == b.key && a.value == b.value;
}
