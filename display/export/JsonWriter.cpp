// SPDX-License-Identifier: Apache-2.0
#include "display/export/JsonWriter.h"

#include "model/RegistryValue.h"

namespace {
using L1 = QLatin1String;
using Type = RegistryValue::Type;

constexpr int exactBytes = 4; // numbers up to this size are exact in every JSON reader
} // namespace

void JsonWriter::separate()
{
    if (!std::exchange(isFirst_, true))
        output_.add(',');
    if (std::exchange(startsLine_, false))
        output_.add('\n');
}

void JsonWriter::begin(char bracket)
{
    separate();
    output_.add(bracket);
}

void JsonWriter::end(char bracket)
{
    if (std::exchange(startsLine_, false))
        output_.add('\n');
    output_.add(bracket);
    endsValue();
}

void JsonWriter::endDocument()
{
    output_.add('\n');
    isFirst_ = true;
}

void JsonWriter::key(QStringView key)
{
    separate();
    output_.addJson(key);
    output_.add(':');
}

void JsonWriter::text(QStringView text)
{
    separate();
    output_.addJson(text);
    endsValue();
}

void JsonWriter::number(quint64 number)
{
    separate();
    output_.addNumber(number);
    endsValue();
}

void JsonWriter::flag(bool flag)
{
    separate();
    output_.add(flag ? L1("true") : L1("false"));
    endsValue();
}

void JsonWriter::null()
{
    separate();
    output_.add(L1("null"));
    endsValue();
}

void JsonWriter::date(const QDateTime &date)
{
    text(date.toUTC().toString(Qt::ISODateWithMs));
}

template<class Items>
void JsonWriter::values(const Items &items)
{
    beginArray();
    for (const RegistryValue &item : items)
        value(item);
    endArray();
}

void JsonWriter::value(const RegistryValue &value)
{
    const auto marked = [this](L1 mark, const auto &write) {
        beginObject();
        key(mark);
        write();
        endObject();
    };
    switch (value.type()) {
    case Type::Dictionary:
        beginObject();
        for (const auto &[name, member] : value.members()) {
            const QString text = name.toOwner();
            // A key that looks like the mark of a type gets another dollar sign.
            key(text.startsWith(u'$') ? QString(u'$' + text) : text);
            this->value(member);
        }
        return endObject();
    case Type::Array:
        return values(value.elements());
    case Type::Set:
        return marked(L1("$set"), [&] { values(value.elements()); });
    case Type::String:
        return text(value.stringView());
    case Type::Number:
        return numberValue(value);
    case Type::Boolean:
        return flag(value.toBoolean());
    case Type::Data:
        return marked(L1("$data"), [&] { text(QString::fromLatin1(value.toData().toBase64())); });
    case Type::Date:
        return marked(L1("$date"), [&] { date(value.toDate()); });
    default:
        return null();
    }
}

void JsonWriter::numberValue(const RegistryValue &number)
{
    const bool isQuoted = number.numberWidth() > exactBytes;
    separate();
    output_.add(isQuoted ? L1("{\"$number\":\"") : L1("{\"$number\":"));
    if (number.isSignedNumber())
        output_.addNumber(number.signedNumber());
    else
        output_.addNumber(number.numberBits());
    output_.add(isQuoted ? L1("\",\"bytes\":") : L1(",\"bytes\":"));
    output_.addNumber(static_cast<quint64>(number.numberWidth()));
    if (number.isSignedNumber())
        output_.add(L1(",\"signed\":true"));
    if (number.notation() == RegistryValue::Notation::Decimal)
        output_.add(L1(",\"written\":\"decimal\""));
    else if (number.notation() == RegistryValue::Notation::Hexadecimal)
        output_.add(L1(",\"written\":\"hexadecimal\""));
    output_.add('}');
    endsValue();
}

void JsonWriter::member(L1 key, const QString &text)
{
    if (text.isNull())
        return;
    this->key(key);
    this->text(text);
}

void JsonWriter::member(L1 key, const QStringList &texts)
{
    this->key(key);
    beginArray();
    for (const QString &text : texts)
        this->text(text);
    endArray();
}

void JsonWriter::member(L1 key, const QDateTime &date)
{
    if (date.isNull())
        return;
    this->key(key);
    this->date(date);
}

void JsonWriter::flagMember(L1 key, bool flag)
{
    this->key(key);
    this->flag(flag);
}

void JsonWriter::number(double number)
{
    constexpr int digits = 17; // none are lost
    separate();
    output_.add(QString::number(number, 'g', digits));
    endsValue();
}

void JsonWriter::numberMember(L1 key, quint64 number)
{
    this->key(key);
    this->number(number);
}
