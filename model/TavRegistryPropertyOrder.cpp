// SPDX-License-Identifier: Apache-2.0
// The orders of property nodes.
#include "model/TavRegistryProperty.h"

namespace {
template<class T>
int sign(const T &a, const T &b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

int sign(int comparison)
{
    return sign(comparison, 0);
}

// Deliberate: shorter first; among equal lengths the last differing byte decides, the greater
// first.
int compareData(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return sign(a.size(), b.size());
    for (qsizetype i = a.size() - 1; i >= 0; --i) {
        if (a[i] != b[i])
            return sign(static_cast<quint8>(b[i]), static_cast<quint8>(a[i]));
    }
    return 0;
}
} // namespace

bool TavRegistryProperty::isEqual(const TavRegistryProperty &other) const
{
    if (this == &other)
        return true;
    return other.propertyClass().isKindOf(propertyClass()) && !isCollection() &&
           !other.isCollection() && value_.meansTheSameAs(other.value_);
}

int TavRegistryProperty::compareByName(const TavRegistryProperty &other) const
{
    switch (parent_ ? parent_->valueType_ : Type::None) {
    case Type::Dictionary:
        return sign(ident_.toOwner().compare(other.name(), Qt::CaseInsensitive));
    case Type::Array:
        return sign(index(), other.index());
    case Type::Set:
        return compareByValue(other);
    default:
        return 0;
    }
}

int TavRegistryProperty::typeRank(Type type)
{
    switch (type) {
    case Type::Boolean:
        return 1;
    case Type::Number:
        return 2;
    case Type::Data:
        return 3;
    case Type::String:
        return 4;
    case Type::Array:
        return 5;
    case Type::Dictionary:
        return 6;
    case Type::Set:
        return 7;
    default:
        return 0;
    }
}

// Deliberate: a collection stores a list of children, so it counts as an array.
TavRegistryProperty::Type TavRegistryProperty::storedType() const
{
    return isCollection() ? Type::Array : value_.type();
}

int TavRegistryProperty::compareByType(const TavRegistryProperty &other) const
{
    const int rank = typeRank(storedType());
    const int otherRank = typeRank(other.valueType_);
    if (rank == 0)
        return 0;
    if (otherRank == 0)
        return -1;
    return sign(rank, otherRank);
}

int TavRegistryProperty::compareByValue(const TavRegistryProperty &other) const
{
    const Type type = storedType();
    if (type != other.valueType_)
        return type == Type::Number ? -1 : compareByType(other);
    switch (type) {
    case Type::Boolean:
        return sign(value_.toBoolean(), other.value_.toBoolean());
    case Type::Number:
        return RegistryValue::compareNumbers(value_, other.value_);
    case Type::String:
        return sign(value_.toString().compare(other.value_.toString(), Qt::CaseInsensitive));
    case Type::Data:
        return compareData(value_.toData(), other.value_.toData());
    case Type::Array:
    case Type::Dictionary:
    case Type::Set:
        return sign(numberOfChildren(), other.numberOfChildren());
    default:
        return 0;
    }
}
