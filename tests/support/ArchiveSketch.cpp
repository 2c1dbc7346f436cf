// SPDX-License-Identifier: Apache-2.0
#include "tests/support/ArchiveSketch.h"

#include "platform/archive/KeyedArchiver.h"

#include <QBuffer>

namespace {
using Object = ArchiveSketch::Object;

void encode(const Object &object, KeyedArchiver &archiver)
{
    for (const auto &[key, value] : object.keys) {
        if (const auto *integer = std::get_if<qint64>(&value))
            archiver.encodeInteger(key, *integer);
        else
            archiver.encodeValue(key, std::get<ArchiveValue>(value));
    }
}
} // namespace

Object &Object::set(QLatin1String key, Value value)
{
    const auto found =
        std::find_if(keys.begin(), keys.end(), [&](const auto &item) { return item.first == key; });
    if (found == keys.end())
        keys.emplace_back(key, std::move(value));
    else
        found->second = std::move(value);
    return *this;
}

Object &Object::remove(QLatin1String key)
{
    std::erase_if(keys, [&](const auto &item) { return item.first == key; });
    return *this;
}

QByteArray ArchiveSketch::bytes() const
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    KeyedArchiver archiver(device);
    QHash<QString, ArchiveClass<Object>> classes;
    // The first object refers to all others, so that positions stay.
    bool isFirst = true;
    for (const Object &object : objects) {
        if (classes.contains(object.className))
            continue;
        classes.insert(object.className,
                       archiver.addClass<Object>(
                           object.className, [&](const Object &encoded, KeyedArchiver &a) {
                               if (std::exchange(isFirst, false)) {
                                   for (const Object &other : objects)
                                       a.reference(other, classes.value(other.className));
                               }
                               encode(encoded, a);
                           }));
    }
    const Object &root = objects.front();
    archiver.encodeRoot(root, classes.value(root.className));
    return device.data();
}
