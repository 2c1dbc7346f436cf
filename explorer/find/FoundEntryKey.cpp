// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FoundEntryKey.h"

#include "platform/text/NaturalOrder.h"

namespace {
using Type = RegistryValue::Type;

int rank(Type type)
{
    switch (type) {
    case Type::None:
        return 0;
    case Type::Boolean:
        return 1;
    case Type::Number:
        return 2;
    case Type::String:
        return 3;
    case Type::Data:
        return 4;
    default:
        return 5;
    }
}
} // namespace

bool operator<(const FoundEntryKey &a, const FoundEntryKey &b)
{
    const RegistryValue &first = a.value_;
    const RegistryValue &second = b.value_;
    const Type type = first.type();
    if (rank(type) != rank(second.type()))
        return rank(type) < rank(second.type());
    switch (type) {
    case Type::Boolean:
        return first.toBoolean() < second.toBoolean();
    case Type::Number:
        return RegistryValue::compareNumbers(first, second) < 0;
    case Type::String:
        return compareNaturally(first.stringView(), second.stringView()) < 0;
    case Type::Data:
        return first.toData() < second.toData();
    default:
        return first.count() < second.count();
    }
}
