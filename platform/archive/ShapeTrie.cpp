// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/ShapeTrie.h"

ShapeTrie::Position ShapeTrie::addClass()
{
    const auto position = static_cast<Position>(steps_.size());
    steps_.push_back({{}, position, 0, {}, {}});
    return position;
}

ShapeTrie::Position ShapeTrie::step(Position from, Key key)
{
    for (const Position next : steps_[from].next) {
        if (steps_[next].key == key)
            return next;
    }
    const auto position = static_cast<Position>(steps_.size());
    steps_.push_back({key, from, steps_[from].length + 1, {}, {}});
    steps_[from].next.push_back(position);
    return position;
}

std::vector<ShapeTrie::Key> ShapeTrie::keys(Position end) const
{
    std::vector<Key> keys(steps_[end].length);
    for (auto key = keys.rbegin(); key != keys.rend(); ++key) {
        *key = steps_[end].key;
        end = steps_[end].previous;
    }
    return keys;
}

std::optional<quint32> ShapeTrie::number(Position end) const
{
    return steps_[end].shape;
}

quint32 ShapeTrie::addShape(Position end)
{
    steps_[end].shape = shapeCount_;
    return shapeCount_++;
}
