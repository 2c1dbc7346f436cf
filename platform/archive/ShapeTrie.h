// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QLatin1String>
#include <optional>
#include <vector>

// Finds the shape of an object while its keys are written: a class and the sequence of keys. Most
// objects follow the path of an earlier one, so a step costs one comparison.
class ShapeTrie
{
public:
    struct Key
    {
        QLatin1String name; // must outlive the trie
        bool isInteger;
        friend bool operator==(const Key &, const Key &) = default;
    };
    using Position = quint32;

    Position addClass(); // the start of a new class's shapes
    Position step(Position from, Key key);
    std::size_t length(Position end) const { return steps_[end].length; }
    std::vector<Key> keys(Position end) const;         // in writing order
    std::optional<quint32> number(Position end) const; // empty: a new shape
    quint32 addShape(Position end);

private:
    struct Step
    {
        Key key;
        Position previous;
        quint32 length;
        std::vector<Position> next;
        std::optional<quint32> shape;
    };

    std::vector<Step> steps_;
    quint32 shapeCount_ = 0;
};
