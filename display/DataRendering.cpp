// SPDX-License-Identifier: Apache-2.0
#include "display/DataRendering.h"

#include "display/UnitFormatter.h"
#include "display/ValueStyles.h"
#include "model/EntryStore.h"
#include "platform/text/KelRoman.h"
#include "platform/text/TextEncodings.h"

#include <array>

namespace {
constexpr std::array<const char *, 32> controlNames = {
    "\\0", "soh", "stx", "etx", "eot", "enq", "ack", "\\a", "\\b", "\\t", "\\n",
    "vt",  "\\f", "\\r", "so",  "si",  "dle", "dc1", "dc2", "dc3", "dc4", "nak",
    "syn", "etb", "can", "em",  "sub", "esc", "fs",  "gs",  "rs",  "us",
};

// Independent of the user's locale.
bool isPrintable(quint8 byte)
{
    return byte >= 0x20 && byte < 0x7f;
}

bool isLetterDigitOrSpace(quint8 byte)
{
    const quint8 lower = byte | 0x20;
    return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') || byte == ' ';
}

// The position of the last byte that is not NUL, if the bytes look like NUL-terminated text; else
// empty.
std::optional<qsizetype> lastByteOfText(QByteArrayView bytes)
{
    if (bytes.size() < 2 || bytes.back() != '\0')
        return std::nullopt;
    qsizetype printable = 0;
    qsizetype high = 0;
    bool hasLetter = false;
    qsizetype last = -1;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<quint8>(bytes[i]);
        if (byte == 0)
            continue;
        last = i;
        if (isPrintable(byte))
            ++printable;
        else if (byte >= 0x80)
            ++high;
        else
            return std::nullopt;
        hasLetter |= isLetterDigitOrSpace(byte);
    }
    return hasLetter && 4 * high <= printable ? std::optional(last) : std::nullopt;
}

DataRendering::Automatic strings(QByteArrayView bytes)
{
    const QString decoded = KelRoman::decode(bytes);
    QString text = QStringLiteral("<\"");
    text.reserve(decoded.size() + 4);
    quint32 count = 0;
    for (const QStringView string : QStringView(decoded).tokenize(QChar())) {
        if (count++ > 0)
            text += QLatin1StringView("\", \"");
        text += string;
    }
    text += QLatin1StringView("\">");
    return {StyledText(text, ValueStyles::characterWrap), count};
}

} // namespace

DataRendering::Integers DataRendering::integers(const QByteArray &bytes,
                                                const PropertyFormatOptions &options,
                                                qint32 machineByteOrder)
{
    using Kind = UnitFormatter::Kind;
    const UnitFormatter formatter(Kind::Data, options, machineByteOrder);
    const char *const format = UnitFormatter::formatText(Kind::Data, options);
    QString text = QStringLiteral("<");
    QByteArrayView rest = bytes;
    while (formatter.appendUnit(text, rest, format))
        text += u' ';
    const bool hasLeftoverBytes = !rest.isEmpty();
    if (hasLeftoverBytes)
        text += tr("…");
    else if (!bytes.isEmpty())
        text.chop(1);
    text += u'>';
    return {StyledText(text, ValueStyles::fixedPitch), hasLeftoverBytes};
}

DataRendering::Characters DataRendering::characters(const QByteArray &bytes, qint64 encoding)
{
    const bool isNumber = encoding >= 0 && encoding < TextEncodings::none;
    const std::optional<QString> decoded =
        isNumber ? TextEncodings::decode(bytes, static_cast<quint32>(encoding)) : std::nullopt;
    if (!decoded) {
        const QString message =
            DataRendering::tr("< – Unable to convert data using selected encoding – >");
        return {StyledText(message, ValueStyles::fixedPitch), 0};
    }
    QString text = QStringLiteral("<\"");
    text.reserve(2 * decoded->size() + 4);
    StyledText::Ranges dots;
    dots.reserve(static_cast<std::size_t>(decoded->size()));
    quint32 count = 0;
    for (qsizetype i = 0; i < decoded->size(); ++count) {
        if (count > 0) {
            dots.push_back({static_cast<quint32>(text.size()), 1, ValueStyles::separatorDot});
            text += u'.';
        }
        const QChar unit = decoded->at(i++);
        if (unit.unicode() < controlNames.size())
            text += QLatin1StringView(controlNames[unit.unicode()]);
        else
            text += unit;
        // Some encodings can produce half a surrogate pair, even at the end.
        if (unit.isHighSurrogate() && i < decoded->size() && decoded->at(i).isLowSurrogate())
            text += decoded->at(i++);
    }
    text += QLatin1StringView("\">");
    return {StyledText(text, ValueStyles::characterWrap, std::move(dots)), count};
}

QByteArray DataRendering::hexadecimal(QByteArrayView bytes, qint32 machineByteOrder)
{
    constexpr char digits[] = "0123456789abcdef";
    const bool isKnownByteOrder = machineByteOrder != EntryStore::ByteOrderUnknown;
    QByteArray text(std::max<qsizetype>(2, 3 * bytes.size() + 1), ' ');
    char *to = text.data();
    *to = '<';
    for (const char byte : bytes) {
        *++to = isKnownByteOrder ? digits[static_cast<quint8>(byte) >> 4] : '?';
        *++to = isKnownByteOrder ? digits[static_cast<quint8>(byte) & 0xf] : '?';
        ++to; // a space
    }
    text.back() = '>';
    return text;
}

bool DataRendering::looksLikeText(QByteArrayView bytes)
{
    return lastByteOfText(bytes).has_value();
}

DataRendering::Automatic DataRendering::automatic(const QByteArray &bytes, qint32 machineByteOrder)
{
    if (const std::optional<qsizetype> last = lastByteOfText(bytes))
        return strings(QByteArrayView(bytes).first(*last + 1));
    return {StyledText(QLatin1StringView(hexadecimal(bytes, machineByteOrder)),
                       ValueStyles::fixedPitch),
            0};
}
