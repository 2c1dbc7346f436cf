// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterValue.h"

#include <QDateTime>
#include <QVarLengthArray>

namespace {
using Type = RegistryValue::Type;

const QStringView trueText = u"true";
const QStringView falseText = u"false";

int sign(qint64 a, qint64 b)
{
    return a < b ? -1 : b < a ? 1 : 0;
}

QString numberText(const RegistryValue &number, int base)
{
    return number.isSignedNumber() && base == 10 ? QString::number(number.signedNumber())
                                                 : QString::number(number.numberBits(), base);
}

// What is selected of a choice, which the kernel writes as "a [b] c"; null for any other value.
const RegistryValue *selectionOf(const RegistryValue &value)
{
    if (value.count() != 2 || value.member(u"choices").type() != Type::Array)
        return nullptr;
    const RegistryValue &selected = value.member(u"selected");
    return selected.isNone() ? nullptr : &selected;
}
} // namespace

FilterValue::FilterValue(const RegistryValue &scalar)
    : value_(&scalar)
    , view_(scalar.stringView())
{
    switch (scalar.type()) {
    case Type::String:
        kind_ = Kind::Text;
        break;
    case Type::Number:
        kind_ = Kind::Number;
        break;
    case Type::Boolean:
        kind_ = Kind::Boolean;
        break;
    case Type::Date:
        kind_ = Kind::Date;
        break;
    case Type::Data:
        kind_ = Kind::Data;
        break;
    default:
        break;
    }
}

FilterValue FilterValue::literal(const QString &text, bool isQuoted)
{
    FilterValue value;
    value.kind_ = isQuoted ? Kind::Quoted : Kind::Literal;
    value.text_ = text;
    value.view_ = value.text_; // copies share the text
    return value;
}

std::optional<FilterQuantity> FilterValue::quantity() const
{
    if (kind_ == Kind::Number)
        return FilterQuantity::of(*value_);
    if (kind_ == Kind::Boolean)
        return FilterQuantity::of(value_->toBoolean());
    return isText() ? FilterQuantity::parse(view_) : std::nullopt;
}

// Words that the kernel or users write.
std::optional<bool> FilterValue::truth() const
{
    if (kind_ == Kind::Boolean)
        return value_->toBoolean();
    const auto is = [this](QStringView word) {
        return view_.compare(word, Qt::CaseInsensitive) == 0;
    };
    if (is(trueText) || is(u"yes") || is(u"y"))
        return true;
    if (is(falseText) || is(u"no") || is(u"n"))
        return false;
    return std::nullopt;
}

std::optional<qint64> FilterValue::time() const
{
    if (kind_ == Kind::Date)
        return value_->toDate().toMSecsSinceEpoch();
    const QDateTime date = QDateTime::fromString(view_.toString(), Qt::ISODate);
    return date.isValid() ? std::optional(date.toMSecsSinceEpoch()) : std::nullopt;
}

QString FilterValue::hexDigits() const
{
    if (kind_ == Kind::Data)
        return QString::fromLatin1(value_->toData().toHex());
    QString digits = view_.toString();
    if (digits.startsWith(u"0x"))
        digits.remove(0, 2);
    return digits.remove(u' ').toLower();
}

bool FilterValue::areEqual(const FilterValue &a, const FilterValue &b)
{
    const auto is = [&](Kind kind) { return a.kind_ == kind || b.kind_ == kind; };
    if (is(Kind::Other))
        return false;
    if (is(Kind::Data))
        return a.hasBytes() && b.hasBytes() && a.hexDigits() == b.hexDigits();
    if (is(Kind::Boolean) && a.truth() && a.truth() == b.truth())
        return true;
    if (!(a.isText() && b.isText() && (a.isExact() || b.isExact()))) {
        if (const auto order = compare(a, b))
            return *order == 0;
    }
    return a.isText() && b.isText() && a.view_ == b.view_;
}

std::optional<int> FilterValue::compare(const FilterValue &a, const FilterValue &b)
{
    if (a.kind_ == Kind::Date || b.kind_ == Kind::Date) {
        const auto first = a.time();
        const auto second = b.time();
        return first && second ? std::optional(sign(*first, *second)) : std::nullopt;
    }
    const auto first = a.quantity();
    const auto second = first ? b.quantity() : std::nullopt;
    return second ? FilterQuantity::compare(*first, *second) : std::nullopt;
}

bool FilterValue::anyText(const RegistryValue &scalar,
                          const std::function<bool(QStringView)> &predicate)
{
    switch (scalar.type()) {
    case Type::String:
        return predicate(scalar.stringView());
    case Type::Number:
        return predicate(numberText(scalar, 10)) ||
               predicate(QStringLiteral("0x") + numberText(scalar, 16));
    case Type::Boolean:
        return predicate(scalar.toBoolean() ? trueText : falseText);
    case Type::Date:
        return predicate(scalar.toDate().toString(Qt::ISODate));
    case Type::Data:
        return predicate(QString::fromLatin1(scalar.toData().toHex()));
    default:
        return false;
    }
}

bool FilterValue::anyScalar(const RegistryValue &value,
                            const std::function<bool(const RegistryValue &)> &predicate)
{
    QVarLengthArray<const RegistryValue *, 32> pending{&value};
    while (!pending.isEmpty()) {
        const RegistryValue &next = *pending.last();
        pending.removeLast();
        if (!next.isCollection()) {
            if (predicate(next))
                return true;
            continue;
        }
        if (const RegistryValue *const selected = selectionOf(next)) {
            pending.append(selected);
            continue;
        }
        for (const auto &[key, member] : next.members())
            pending.append(&member);
        for (const RegistryValue &element : next.elements())
            pending.append(&element);
    }
    return false;
}
