// SPDX-License-Identifier: Apache-2.0
#include "activity/RawText.h"

#include "model/RegistryValue.h"

namespace {
using Type = RegistryValue::Type;

// Recursive: no deeper than a snapshot may hold.
void addLines(const RegistryValue &value, const QString &prefix, QStringList &lines)
{
    if (!value.isCollection()) {
        lines.append(prefix + RawText::of(value));
        return;
    }
    for (const auto &[key, member] : value.members())
        addLines(member,
                 member.isCollection() ? prefix + key.toOwner() + u'/'
                                       : prefix + key.toOwner() + QStringLiteral(" = "),
                 lines);
    for (const RegistryValue &element : value.elements())
        addLines(element, prefix, lines);
}
} // namespace

QString RawText::of(const RegistryValue &scalar)
{
    constexpr int hexadecimal = 16;
    switch (scalar.type()) {
    case Type::Number:
        if (scalar.notation() == RegistryValue::Notation::Hexadecimal)
            return QStringLiteral("0x%1").arg(scalar.numberBits(), 2 * scalar.numberWidth(),
                                              hexadecimal, QLatin1Char('0'));
        return scalar.isSignedNumber() ? QString::number(scalar.signedNumber())
                                       : QString::number(scalar.numberBits());
    case Type::Boolean:
        return scalar.toBoolean() ? QStringLiteral("Y") : QStringLiteral("N");
    case Type::Data:
        return QString::fromLatin1(scalar.toData().toHex());
    case Type::Date:
        return scalar.toDate().toUTC().toString(Qt::ISODateWithMs);
    default:
        return scalar.toString();
    }
}

QStringList RawText::linesOf(const RegistryValue &value)
{
    QStringList lines;
    addLines(value, {}, lines);
    return lines;
}
