// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/filter/FilterQuantity.h"

#include <functional>

// One side of a comparison: a scalar of the registry, or what stands in an expression.
class FilterValue
{
public:
    // Refers to the scalar, which must stay.
    explicit FilterValue(const RegistryValue &scalar);
    // A quoted text equals only a number or exactly that text.
    static FilterValue literal(const QString &text, bool isQuoted);

    static bool areEqual(const FilterValue &a, const FilterValue &b);
    // Negative, 0 or positive; none for what has no order: only numbers and dates have one.
    static std::optional<int> compare(const FilterValue &a, const FilterValue &b);

    // Whether a text satisfies the predicate by which the scalar is searched. A number has two, the
    // decimal and the hexadecimal.
    static bool anyText(const RegistryValue &scalar,
                        const std::function<bool(QStringView)> &predicate);
    // The scalars in a value, at any depth: of a choice only what is selected.
    static bool anyScalar(const RegistryValue &value,
                          const std::function<bool(const RegistryValue &)> &predicate);

private:
    enum class Kind : quint8 { Literal, Quoted, Text, Number, Boolean, Date, Data, Other };

    FilterValue() = default;
    bool isExact() const { return kind_ == Kind::Quoted; }
    bool isText() const
    {
        return kind_ == Kind::Text || kind_ == Kind::Literal || kind_ == Kind::Quoted;
    }
    bool hasBytes() const { return isText() || kind_ == Kind::Data; }
    std::optional<FilterQuantity> quantity() const;
    std::optional<bool> truth() const;
    std::optional<qint64> time() const; // milliseconds since 1970
    QString hexDigits() const;

    Kind kind_ = Kind::Other;
    const RegistryValue *value_ = nullptr; // null for a literal
    QString text_;                         // of a literal
    QStringView view_;                     // of any text
};
