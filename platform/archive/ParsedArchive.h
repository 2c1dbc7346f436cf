// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/PackedValues.h"

#include <QStringList>

// The result of parsing an archive: each object's shape and the position of its values. All
// references are checked: the objects and values they name exist.
struct ParsedArchive
{
    struct Key
    {
        QByteArray name; // UTF-8
        bool isInteger;
        // Caches the literal that last matched the name, to compare addresses before texts.
        mutable const char *matchedLiteral = nullptr;
    };
    struct Shape
    {
        QByteArray className;
        std::vector<Key> keys;
        // Caches the constant list of classes that last contained this one.
        mutable const QLatin1String *allowedBy = nullptr;
    };
    struct Object
    {
        quint32 shape;
        std::size_t firstField; // one field for each key of the shape
    };
    std::vector<Shape> shapes;
    std::vector<Object> objects; // the root first
    PackedValues fields;         // the payload of a list or dictionary is its start in elements
    // A list or dictionary starts with a value whose payload is the number of all values inside.
    PackedValues elements;
    PackedValues shared; // strings and dates by their shared number; payload: index below
    QStringList strings;
    std::vector<QDateTime> dates;
    std::vector<QByteArray> data;

    const QString &string(quint64 index) const { return strings[static_cast<qsizetype>(index)]; }
};
