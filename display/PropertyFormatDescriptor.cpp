// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyFormatDescriptor.h"

#include <optional>

namespace {
struct Letter
{
    char16_t letter;
    qint64 value;
};

constexpr Letter baseLetters[] = {{u'b', 2}, {u'o', 8}, {u'd', 10}, {u'x', 16}};
constexpr Letter orderLetters[] = {{u'h', PropertyFormatOptions::NativeOrder},
                                   {u'b', PropertyFormatOptions::BigEndian},
                                   {u'l', PropertyFormatOptions::LittleEndian}};
constexpr Letter signLetters[] = {{u's', 1}, {u'u', 0}};

template<std::size_t Count>
bool append(QString &text, const Letter (&letters)[Count], qint64 value)
{
    for (const Letter &candidate : letters) {
        if (candidate.value == value) {
            text += candidate.letter;
            return true;
        }
    }
    return false;
}

template<std::size_t Count>
bool take(QStringView &text, const Letter (&letters)[Count], qint64 &value)
{
    for (const Letter &candidate : letters) {
        if (text.startsWith(candidate.letter)) {
            value = candidate.value;
            text = text.mid(1);
            return true;
        }
    }
    return false;
}

bool takeByteOrder(QStringView &text, qint64 &order)
{
    order = PropertyFormatOptions::NativeOrder;
    return text.isEmpty() || take(text, orderLetters, order);
}

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

std::optional<PropertyFormatOptions> readCharacters(QStringView text)
{
    const auto end = std::find_if_not(text.begin(), text.end(), isDigit);
    const qsizetype digits = end - text.begin();
    bool isNumber = false;
    PropertyFormatOptions options;
    options.unit = PropertyFormatOptions::characters;
    options.encoding = static_cast<qint64>(text.first(digits).toULongLong(&isNumber));
    text = text.mid(digits);
    if (!isNumber || !takeByteOrder(text, options.byteOrder))
        return std::nullopt;
    return options;
}

std::optional<PropertyFormatOptions> readIntegers(QStringView text)
{
    PropertyFormatOptions options;
    options.unit = text.front().unicode() - u'0';
    text = text.mid(1);
    const bool complete = options.isInteger() && take(text, baseLetters, options.base) &&
                          takeByteOrder(text, options.byteOrder) &&
                          take(text, signLetters, options.signedness) && text.isEmpty();
    return complete ? std::optional(options) : std::nullopt;
}

std::optional<PropertyFormatOptions> readDescriptor(QStringView text)
{
    const bool isAscii = std::all_of(text.begin(), text.end(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    if (text.isEmpty() || !isAscii)
        return std::nullopt;
    switch (text.front().unicode()) {
    case u'a':
        return PropertyFormatOptions{.unit = PropertyFormatOptions::automatic};
    case u'd':
        return PropertyFormatOptions{.unit = PropertyFormatOptions::useDefault};
    case u's':
        return readCharacters(text.mid(1));
    default:
        return readIntegers(text);
    }
}
} // namespace

QString PropertyFormatDescriptor::descriptorForPropertyFormats(const PropertyFormatOptions &options)
{
    if (options.unit == PropertyFormatOptions::useDefault)
        return QStringLiteral("d");
    if (options.unit == PropertyFormatOptions::automatic)
        return QStringLiteral("a");
    QString text;
    if (options.unit == PropertyFormatOptions::characters) {
        text = u's' + QString::number(static_cast<quint64>(options.encoding));
        return append(text, orderLetters, options.byteOrder) ? text : QString();
    }
    text = QString::number(options.unit);
    const bool complete = options.isInteger() && append(text, baseLetters, options.base) &&
                          append(text, orderLetters, options.byteOrder) &&
                          append(text, signLetters, options.signedness);
    return complete ? text : QString();
}

PropertyFormatOptions
PropertyFormatDescriptor::propertyFormatForDescriptor(const QString &descriptor)
{
    static constexpr PropertyFormatOptions unreadable{.unit = PropertyFormatOptions::unreadable};
    return readDescriptor(descriptor).value_or(unreadable);
}
