// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/CompactArray.h"

#include <algorithm>
#include <vector>

// A small map from plane name to value, ordered by plane name.
template<class T>
class PlaneMap
{
public:
    struct Item
    {
        CompactString key;
        T value;

        QString plane() const { return key.toOwner(); }
    };

    const T *find(const QString &plane) const
    {
        const auto item = lowerBound(items_, plane);
        return item != items_.end() && isOf(*item, plane) ? &item->value : nullptr;
    }
    T *find(const QString &plane) { return const_cast<T *>(std::as_const(*this).find(plane)); }
    T &operator[](const QString &plane)
    {
        auto item = lowerBound(items_, plane);
        if (item == items_.end() || !isOf(*item, plane))
            item = items_.insert(item, Item{CompactString(plane), T()});
        return item->value;
    }
    void clear() { items_.clear(); }
    void reserve(std::size_t size) { items_.reserve(size); }
    bool isEmpty() const { return items_.empty(); }
    std::size_t size() const { return items_.size(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }

private:
    static QStringView textOf(const Item &item) { return {item.key.data(), item.key.size()}; }
    // Fast path: names of planes share their text.
    static bool isOf(const Item &item, const QString &plane)
    {
        return (item.key.data() == plane.constData() && item.key.size() == plane.size()) ||
               textOf(item) == plane;
    }
    template<class Items>
    static auto lowerBound(Items &items, const QString &plane)
    {
        return std::lower_bound(items.begin(), items.end(), plane,
                                [](const Item &item, const QString &key) {
                                    return item.key.data() != key.constData() && textOf(item) < key;
                                });
    }

    std::vector<Item> items_;
};
