#pragma once

#include "platform/archive/ArchiveItems.h"

#include <QStringList>

// An archive taken apart: for each object its shape and where its values lie. What it says of
// references is true: they lead to objects and values that exist.
struct ArchiveTable
{
    struct Key
    {
        QByteArray name; // UTF-8
        bool isInteger;
        // The name by which it was last asked for; names are constants, so that comparing where
        // they lie mostly tells enough.
        mutable const char *askedAs = nullptr;
    };
    struct Shape
    {
        QByteArray className;
        std::vector<Key> keys;
        // The list of classes that last allowed this one; such lists are constants.
        mutable const QLatin1String *allowedBy = nullptr;
    };
    struct Object
    {
        quint32 shape;
        std::size_t firstField; // one for each key of the shape
    };
    std::vector<Shape> shapes;
    std::vector<Object> objects; // the root first
    ArchiveItems fields;         // a list's or dictionary's payload is where it starts in elements
    // A list or dictionary starts with an item whose payload is the number of all items inside.
    ArchiveItems elements;
    ArchiveItems shared; // strings and dates by their shared number; payload: where they are below
    QStringList strings;
    std::vector<QDateTime> dates;
    std::vector<QByteArray> data;

    const QString &string(quint64 index) const { return strings[static_cast<qsizetype>(index)]; }
};
