// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveValueView.h"

#include <QFlags>
#include <QLatin1String>
#include <QStringList>
#include <concepts>
#include <limits>
#include <optional>
#include <span>

class KeyedUnarchiver;

// The kinds allowed for a value and, at any depth, its elements; dictionary keys count as strings.
enum class ArchiveKind {
    Null = 1,
    Boolean = 2,
    Number = 4,
    String = 8,
    Data = 16,
    Date = 32,
    List = 64,
    Dictionary = 128,
};
Q_DECLARE_FLAGS(ArchiveKinds, ArchiveKind)
Q_DECLARE_OPERATORS_FOR_FLAGS(ArchiveKinds)
using ArchiveClassNames = std::span<const QLatin1String>;

// Decodes one object of an archive by its keys. A missing key counts as absent without an error;
// a value of a wrong kind or class is absent and sets the unarchiver's error. Reading keys in
// writing order is fastest. Keys must be literals: they are compared by address first. Cheap to
// copy; the unarchiver must outlive it.
class ObjectDecoder
{
public:
    ArchiveReference reference() const { return reference_; }
    const QByteArray &className() const;
    bool isOfClass(ArchiveClassNames classes) const;
    bool contains(QLatin1String key) const; // false for an absent value
    bool containsData(QLatin1String key) const;
    bool containsNumber(QLatin1String key) const;

    template<std::integral T>
    T decodeInteger(QLatin1String key, T absent = 0) const;
    bool decodeBoolean(QLatin1String key) const; // false when absent
    std::optional<ArchiveNumber> decodeNumber(QLatin1String key) const;
    QString decodeString(QLatin1String key) const;  // null when absent
    QDateTime decodeDate(QLatin1String key) const;  // UTC; null when absent
    QByteArray decodeData(QLatin1String key) const; // null when absent
    std::optional<QStringList> decodeStrings(QLatin1String key) const;
    std::optional<ArchiveReference> decodeReference(QLatin1String key,
                                                    ArchiveClassNames classes) const;
    std::optional<std::vector<ArchiveReference>> decodeReferences(QLatin1String key,
                                                                  ArchiveClassNames classes) const;
    ArchiveValue decodeValue(QLatin1String key, ArchiveKinds kinds,
                             ArchiveClassNames classes = {}) const;
    ArchiveValueView valueView(QLatin1String key, ArchiveKinds kinds,
                               ArchiveClassNames classes = {}) const;

private:
    friend class KeyedUnarchiver;
    struct Item
    {
        PackedKind kind;
        quint64 payload;
    };

    ObjectDecoder(KeyedUnarchiver &unarchiver, ArchiveReference reference);
    std::optional<std::size_t> column(QLatin1String key) const;
    Item item(QLatin1String key) const; // absent after an error
    PackedKind kindOf(QLatin1String key) const;
    Item itemOfKind(QLatin1String key, PackedKind kind) const;
    bool isAllowed(quint64 object, ArchiveClassNames classes) const;
    Item itemOfKinds(QLatin1String key, ArchiveKinds kinds, ArchiveClassNames classes) const;
    void failKind(QLatin1String key) const;

    KeyedUnarchiver *unarchiver_;
    const ParsedArchive::Shape *shape_;
    std::size_t firstField_;
    ArchiveReference reference_;
    mutable std::size_t nextColumn_ = 0;
};

template<std::integral T>
T ObjectDecoder::decodeInteger(QLatin1String key, T absent) const
{
    const Item value = item(key);
    constexpr auto highest = static_cast<quint64>(std::numeric_limits<T>::max());
    if (value.kind == PackedKind::Integer && value.payload <= highest)
        return static_cast<T>(value.payload);
    if constexpr (std::signed_integral<T>) {
        if (value.kind == PackedKind::NegativeInteger && value.payload <= highest)
            return static_cast<T>(~static_cast<qint64>(value.payload));
    }
    if (value.kind == PackedKind::Absent)
        return absent;
    failKind(key);
    return 0;
}
