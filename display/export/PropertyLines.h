// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <functional>

class TavPropertyOutlineItem;
class TavRegistryProperty;

// The properties of an entry as lines, each below the one that contains it.
namespace PropertyLines {
struct Line
{
    TavPropertyOutlineItem &property;
    QString name; // "[3]" for an element of a list
    quint32 level;
};

// Calls action for all properties below the root. Without recursion: a snapshot's may be deep.
void forEach(const TavRegistryProperty &root, const std::function<void(const Line &)> &action);
} // namespace PropertyLines
