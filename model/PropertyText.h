#pragma once

#include "platform/CompactArray.h"

#include <functional>

class TavRegistryProperty;

// All keys and all strings of one property tree in one piece of memory, folded so that case does
// not matter: a search reads it many times faster than it could walk the tree. What is in sets is
// left out. So are texts that would make it large for the number of nodes: many nodes may share one
// long text, which is to be looked for in the tree then.
class PropertyText
{
public:
    // Stands before and after each text. UTF-8 has no such byte.
    static constexpr char separator = '\xff';

    PropertyText() = default; // not made yet
    explicit PropertyText(const TavRegistryProperty &table);

    bool isMade() const { return bytes_.size() > 0; }
    QByteArrayView keys() const { return {bytes_.data(), qsizetype(keysSize_)}; }
    QByteArrayView strings() const { return both().sliced(keysSize_); }
    QByteArrayView both() const { return {bytes_.data(), bytes_.size()}; }
    bool isWhole() const { return isWhole_; } // false: there are texts only in the tree

    // Whether any key or string of the tree satisfies the predicate, as a search would look at it.
    using Predicate = std::function<bool(QStringView)>;
    static bool anyKey(const TavRegistryProperty &table, const Predicate &predicate);
    static bool anyString(const TavRegistryProperty &table, const Predicate &predicate);

    // In UTF-8, with each character folded by itself; half a surrogate pair is kept.
    static QByteArray folded(QStringView text);

private:
    [[no_unique_address]] CompactBytes bytes_;
    quint32 keysSize_ : 31 = 0;
    quint32 isWhole_ : 1 = true;
};
