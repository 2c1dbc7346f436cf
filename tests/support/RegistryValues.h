// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

// Short notations for values in tests.
namespace values {
inline CompactString key(const char *text)
{
    return CompactString(QString::fromUtf8(text));
}
inline RegistryValue text(const char *text)
{
    return RegistryValue::string(QString::fromUtf8(text));
}
inline RegistryValue number(quint64 bits, int width = 4)
{
    return RegistryValue::number(bits, width);
}
inline RegistryValue negative(qint64 number, int width = 4)
{
    return RegistryValue::number(static_cast<quint64>(number), width, true);
}
inline RegistryValue data(const char *hex)
{
    return RegistryValue::data(QByteArray::fromHex(hex));
}
inline RegistryValue array(RegistryValue::Elements elements)
{
    return RegistryValue::array(std::move(elements));
}
inline RegistryValue set(RegistryValue::Elements members)
{
    return RegistryValue::set(std::move(members));
}
inline RegistryValue dictionary(std::initializer_list<std::pair<const char *, RegistryValue>> items)
{
    RegistryValue::Members members;
    for (const auto &[name, value] : items)
        members.push_back({key(name), value});
    return RegistryValue::dictionary(std::move(members));
}
// The property tree of a value, with nodes without an entry.
inline PropertyRef build(const RegistryValue &value)
{
    return TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(), nullptr, {},
                                       nullptr, {}, 0, value);
}
} // namespace values
