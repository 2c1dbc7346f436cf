#pragma once

#include "platform/CompactArray.h"

class TavRegistryProperty;

// All keys and all strings of one property tree in one piece of memory, folded so that case does
// not matter: a search reads it many times faster than it could walk the tree. What is in sets is
// left out.
class PropertyText
{
public:
    // Stands before and after each text. UTF-8 has no such byte.
    static constexpr char separator = '\xff';

    PropertyText() = default; // not made yet
    explicit PropertyText(const TavRegistryProperty &table);

    bool isMade() const { return bytes_.size() > 0; }
    QByteArrayView keys() const { return {bytes_.data(), qsizetype(keysSize_)}; }
    QByteArrayView strings() const { return whole().sliced(keysSize_); }
    QByteArrayView whole() const { return {bytes_.data(), bytes_.size()}; }

    // In UTF-8, with each character folded by itself; half a surrogate pair is kept.
    static QByteArray folded(QStringView text);

private:
    [[no_unique_address]] CompactBytes bytes_;
    quint32 keysSize_ = 0;
};
