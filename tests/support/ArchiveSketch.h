// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveValue.h"

#include <QLatin1String>
#include <variant>

// The objects of an archive as plain lists of keys, to create archives that no program would write.
// Objects refer to each other by position.
struct ArchiveSketch
{
    using Value = std::variant<qint64, ArchiveValue>; // an integer key, or any other
    struct Object
    {
        QString className;
        std::vector<std::pair<QLatin1String, Value>> keys;

        Object &set(QLatin1String key, Value value);
        Object &remove(QLatin1String key);
    };

    std::vector<Object> objects;

    QByteArray bytes() const;
};
