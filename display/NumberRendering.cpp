// SPDX-License-Identifier: Apache-2.0
#include "display/NumberRendering.h"

#include "display/UnitFormatter.h"
#include "model/RegistryValue.h"
#include "platform/text/TextEncodings.h"

#include <charconv>

namespace {
QString internalError()
{
    return NumberRendering::tr("(internal error!)");
}

// In little-endian byte order.
QByteArray storedBytes(const RegistryValue &number)
{
    QByteArray bytes;
    for (int i = 0; i < number.numberWidth(); ++i)
        bytes.append(static_cast<char>(number.numberBits() >> 8 * i));
    return bytes;
}

QString asAutomatic(const RegistryValue &number)
{
    NumberRendering::Buffer buffer;
    const QByteArrayView text = NumberRendering::automatic(number, buffer);
    return text.isEmpty() ? NumberRendering::tr("(illegal number value)") : QLatin1StringView(text);
}

QString asCharacters(QByteArray bytes, qint64 byteOrder)
{
    const bool isKnownOrder = byteOrder >= PropertyFormatOptions::NativeOrder &&
                              byteOrder <= PropertyFormatOptions::LittleEndian;
    // Deliberate: an unknown byte order gives question marks.
    if (bytes.size() > 1 && !isKnownOrder)
        return QString(bytes.size(), u'?');
    if (byteOrder == PropertyFormatOptions::BigEndian)
        std::reverse(bytes.begin(), bytes.end());
    bytes.append('\0');
    const auto text = TextEncodings::decode(bytes.first(bytes.indexOf('\0')), TextEncodings::ascii);
    return text ? *text : internalError();
}

QString asInteger(const QByteArray &bytes, PropertyFormatOptions options, qint32 machineByteOrder)
{
    using Kind = UnitFormatter::Kind;
    options.unit = bytes.size();
    QString text;
    QByteArrayView rest = bytes;
    const bool written =
        UnitFormatter(Kind::Number, options, machineByteOrder)
            .appendUnit(text, rest, UnitFormatter::formatText(Kind::Number, options));
    return written ? text : internalError();
}
} // namespace

// As the host wrote it.
QByteArrayView NumberRendering::automatic(const RegistryValue &number, Buffer &buffer)
{
    if (number.numberWidth() == 0)
        return {};
    char *const end = buffer.data() + buffer.size();
    if (number.notation() == RegistryValue::Notation::Decimal)
        return {buffer.data(), number.isSignedNumber()
                                   ? std::to_chars(buffer.data(), end, number.signedNumber()).ptr
                                   : std::to_chars(buffer.data(), end, number.numberBits()).ptr};
    buffer[0] = '0';
    buffer[1] = 'x';
    return {buffer.data(), std::to_chars(buffer.data() + 2, end, number.numberBits(), 16).ptr};
}

QString NumberRendering::text(const RegistryValue &number, const PropertyFormatOptions &options,
                              qint32 machineByteOrder)
{
    if (options.unit == PropertyFormatOptions::automatic)
        return asAutomatic(number);
    const QByteArray bytes = storedBytes(number);
    if (bytes.isEmpty())
        return internalError();
    if (options.unit == PropertyFormatOptions::characters)
        return asCharacters(bytes, options.byteOrder);
    return asInteger(bytes, options, machineByteOrder);
}
