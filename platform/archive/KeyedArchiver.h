// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/DigestDevice.h"
#include "platform/archive/PendingObject.h"
#include "platform/archive/ShapeTrie.h"

#include <QCborStreamWriter>
#include <QHash>
#include <concepts>
#include <functional>
#include <span>

// A class of objects registered with an archiver.
template<class T>
struct ArchiveClass
{
    quint32 number;
};

// Writes a graph of objects. Each object is written once, and so are equal strings and dates.
// Objects are identified by their addresses and must outlive the archiver. The graph may have
// cycles and any depth.
class KeyedArchiver
{
public:
    explicit KeyedArchiver(QIODevice &device);

    // The encoder writes the keys of one object with the functions below.
    template<class T, class Encoder>
    ArchiveClass<T> addClass(const QString &name, Encoder encoder)
    {
        return {_addClass(name, [encoder](const void *object, KeyedArchiver &archiver) {
            encoder(*static_cast<const T *>(object), archiver);
        })};
    }

    // Writes the whole archive; on failure false, with the reason in errorString.
    template<class T>
    bool encodeRoot(const T &root, ArchiveClass<T> type)
    {
        reference(root, type);
        return _encodeObjects();
    }
    const QString &errorString() const { return errorString_; }

    // For references from other objects; queues the object for writing.
    template<class T>
    ArchiveReference reference(const T &object, ArchiveClass<T> type)
    {
        return _reference(&object, type.number);
    }

    // For encoders: one call for each key of the object. Keys are literals.
    template<std::integral T>
    void encodeInteger(QLatin1String key, T value)
    {
        _step(key, true);
        if constexpr (std::signed_integral<T>) {
            if (value < 0) {
                pending_.add(PackedKind::NegativeInteger, ~static_cast<quint64>(value));
                return;
            }
        }
        pending_.add(PackedKind::Integer, static_cast<quint64>(value));
    }
    void encodeBoolean(QLatin1String key, bool value);
    void encodeString(QLatin1String key, const QString &value); // null: absent
    void encodeDate(QLatin1String key, const QDateTime &value); // null: absent
    void encodeReference(QLatin1String key, std::optional<ArchiveReference> value);
    void encodeReferences(QLatin1String key, std::span<const ArchiveReference> list);
    void encodeValue(QLatin1String key, const ArchiveValue &value);

private:
    using AnyEncoder = std::function<void(const void *, KeyedArchiver &)>;
    struct Class
    {
        QString name;
        AnyEncoder encoder;
        ShapeTrie::Position start;
    };
    struct Object
    {
        const void *address;
        quint32 type;
    };
    class ValueAdder;

    quint32 _addClass(const QString &name, AnyEncoder encoder);
    ArchiveReference _reference(const void *object, quint32 type);
    bool _encodeObjects();
    void _writeHeader();
    void _writeObject(std::size_t index);
    void _writeShape(const Class &type);
    void _writeDigest();
    void _fail(const QString &reason);
    void _step(QLatin1String key, bool isInteger);
    void _addString(const QString &text);
    void _addDate(const QDateTime &date);
    void _addValue(const ArchiveValue &value, int depth);

    DigestDevice output_;
    QCborStreamWriter writer_;
    ShapeTrie shapes_;
    ShapeTrie::Position position_ = 0;
    PendingObject pending_;
    std::vector<Class> classes_;
    std::vector<Object> objects_; // in the order they are written
    QHash<const void *, quint32> objectIndexes_;
    QHash<QString, quint64> sharedStrings_;
    // Long strings by address: many values may share one, and hashing takes time with its length.
    QHash<const QChar *, quint64> longStrings_;
    QHash<qint64, quint64> sharedDates_;
    quint64 sharedCount_ = 0;
    QString errorString_;
};
