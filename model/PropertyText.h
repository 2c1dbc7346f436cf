#pragma once

#include "platform/text/CompactArray.h"

#include <functional>

class RegistryValue;
class TavRegistryProperty;

// All keys and all strings of one property tree, folded so that case does not matter: a search
// reads them many times faster than it could walk the tree. What is in sets is left out. So are
// texts that would make it large for the number of nodes: many nodes may share one long text, which
// is to be looked for in the tree then.
class PropertyText
{
public:
    // Stands before and after each text. UTF-8 has no such byte.
    static constexpr char separator = '\xff';

    PropertyText() = default; // not made yet
    explicit PropertyText(const TavRegistryProperty &table);
    explicit PropertyText(const RegistryValue &table); // of the tree that would be made of it

    bool isMade() const { return keys_.size() > 0; }
    QByteArrayView keys() const { return {keys_.data(), keys_.size()}; }
    QByteArrayView strings() const { return {strings_.data(), strings_.size()}; }
    bool isWhole() const { return isWhole_; } // false: there are texts only in the tree

    // Whether any key or string of the tree satisfies the predicate, as a search would look at it.
    using Predicate = std::function<bool(QStringView)>;
    static bool anyKey(const TavRegistryProperty &table, const Predicate &predicate);
    static bool anyString(const TavRegistryProperty &table, const Predicate &predicate);

    // In UTF-8, with each character folded by itself; half a surrogate pair is kept.
    static QByteArray folded(QStringView text);

private:
    class Builder;

    CompactBytes keys_; // shared by trees with the same keys
    [[no_unique_address]] CompactBytes strings_;
    bool isWhole_ = true;
};
