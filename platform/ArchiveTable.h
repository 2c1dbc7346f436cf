#pragma once

#include "platform/ArchiveItems.h"

// An archive taken apart: for each object its shape and where its values lie. What it says of
// references is true: they lead to objects and shared values that exist.
struct ArchiveTable
{
    struct Key
    {
        QString name;
        bool isInteger;
    };
    struct Shape
    {
        QString className;
        std::vector<Key> keys;
    };
    struct Object
    {
        quint32 shape;
        std::size_t firstField; // one for each key of the shape
    };
    using SharedValue = std::variant<QString, QDateTime>;

    std::vector<Shape> shapes;
    std::vector<Object> objects; // the root first
    ArchiveItems fields;         // a list's or dictionary's payload is where it starts in elements
    // A list or dictionary starts with an item whose payload is the number of all items inside.
    ArchiveItems elements;
    std::vector<SharedValue> shared;
    std::vector<QByteArray> data;

    const QString &string(quint64 index) const { return std::get<QString>(shared[index]); }
    const QDateTime &date(quint64 index) const { return std::get<QDateTime>(shared[index]); }
};
