#pragma once

#include "platform/CompactArray.h"

#include <algorithm>
#include <vector>

// A small table from plane name to something, ordered by plane name.
template<class T>
class PlaneTable
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
        const auto item = std::find_if(items_.begin(), items_.end(),
                                       [&](const Item &each) { return isAt(each, plane); });
        return item != items_.end() ? &item->value : nullptr;
    }
    T *find(const QString &plane) { return const_cast<T *>(std::as_const(*this).find(plane)); }
    T &operator[](const QString &plane)
    {
        if (T *known = find(plane))
            return *known;
        const auto next = std::find_if(items_.begin(), items_.end(),
                                       [&](const Item &item) { return plane < textOf(item); });
        return items_.insert(next, Item{CompactString(plane), T()})->value;
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
    static bool isAt(const Item &item, const QString &plane)
    {
        // Names of planes share their text, so most comparisons end at once.
        return item.key.size() == plane.size() &&
               (item.key.data() == plane.constData() || textOf(item) == plane);
    }

    std::vector<Item> items_;
};
