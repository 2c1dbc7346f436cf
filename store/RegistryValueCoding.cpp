// SPDX-License-Identifier: Apache-2.0
#include "store/RegistryValueCoding.h"

ArchiveValue archiveValue(const RegistryValue &value)
{
    using Type = RegistryValue::Type;
    switch (value.type()) {
    case Type::String:
        return value.toString();
    case Type::Number:
        return ArchiveNumber{value.numberBits(), value.numberWidth(), value.isSignedNumber()};
    case Type::Boolean:
        return value.toBoolean();
    case Type::Data:
        return value.toData();
    case Type::Date:
        return value.toDate();
    case Type::Array: {
        ArchiveList list;
        for (const RegistryValue &element : value.elements())
            list.push_back(archiveValue(element));
        return list;
    }
    default:
        return ArchiveNull();
    }
}

RegistryValue registryValue(ArchiveValue value)
{
    if (auto *text = std::get_if<QString>(&value))
        return RegistryValue::string(std::move(*text));
    if (const auto *number = value.get<ArchiveNumber>())
        return RegistryValue::number(number->bits, number->width, number->isSigned);
    if (const auto *truth = value.get<bool>())
        return RegistryValue::boolean(*truth);
    if (auto *data = std::get_if<QByteArray>(&value))
        return RegistryValue::data(std::move(*data));
    if (const auto *date = value.get<QDateTime>())
        return RegistryValue::date(*date);
    if (value.get<ArchiveNull>())
        return RegistryValue::null();
    const auto *list = value.get<ArchiveList>();
    if (!list)
        return {};
    RegistryValue::Elements elements;
    for (const ArchiveValue &element : *list)
        elements.push_back(registryValue(element));
    return RegistryValue::array(std::move(elements));
}
