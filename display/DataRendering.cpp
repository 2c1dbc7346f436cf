#include "display/DataRendering.h"

#include "display/UnitFormatter.h"
#include "display/ValueStyles.h"
#include "model/EntryStore.h"
#include "platform/KelRoman.h"
#include "platform/TextEncodings.h"

#include <array>

namespace {
constexpr std::array<const char *, 32> controlNames = {
    "\\0", "soh", "stx", "etx", "eot", "enq", "ack", "\\a", "\\b", "\\t", "\\n",
    "vt",  "\\f", "\\r", "so",  "si",  "dle", "dc1", "dc2", "dc3", "dc4", "nak",
    "syn", "etb", "can", "em",  "sub", "esc", "fs",  "gs",  "rs",  "us",
};

QString bracketed(const QString &text)
{
    return u'<' + text + u'>';
}

// The classes of the POSIX locale, whatever the user's.
bool isPrintable(quint8 byte)
{
    return byte >= 0x20 && byte < 0x7f;
}

bool isLetterDigitOrSpace(quint8 byte)
{
    const quint8 lower = byte | 0x20;
    return (lower >= 'a' && lower <= 'z') || (byte >= '0' && byte <= '9') || byte == ' ';
}

// Where the last string ends if the bytes look like NUL-terminated text: the last byte that is no
// NUL. None if they do not.
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

DataRendering::Automatic strings(const QByteArray &bytes, qsizetype last)
{
    QString text;
    quint32 count = 0;
    for (qsizetype start = 0; start <= last;) {
        const qsizetype end = bytes.indexOf('\0', start); // the last byte is one
        if (count++ > 0)
            text += QLatin1StringView(", ");
        text += u'"' + KelRoman::decode(QByteArrayView(bytes).sliced(start, end - start)) + u'"';
        start = end + 1;
    }
    return {StyledText(bracketed(text), ValueStyles::characterWrap), count};
}

QString hexadecimalBytes(QByteArrayView bytes, bool isKnownByteOrder)
{
    static constexpr char16_t digits[] = u"0123456789abcdef";
    QString text;
    text.reserve(3 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<quint8>(c);
        if (!text.isEmpty())
            text += u' ';
        text += isKnownByteOrder ? digits[byte >> 4] : u'?';
        text += isKnownByteOrder ? digits[byte & 15] : u'?';
    }
    return text;
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
    QString separator;
    for (;;) {
        const qsizetype before = text.size();
        text += separator;
        if (!formatter.appendUnit(text, rest, format)) {
            text.truncate(before);
            break;
        }
        separator = QStringLiteral(" ");
    }
    if (!rest.isEmpty())
        text += separator + DataRendering::tr("…");
    text += u'>';
    return {StyledText(text, ValueStyles::fixedPitch), !rest.isEmpty()};
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
    StyledText text;
    text.reserve(2 * decoded->size() + 4, 2 * static_cast<std::size_t>(decoded->size()) + 1);
    text.append(u"<\"", ValueStyles::characterWrap);
    quint32 count = 0;
    for (qsizetype i = 0; i < decoded->size(); ++count) {
        if (count > 0)
            text.append(u".", ValueStyles::separatorDot);
        const char16_t unit = decoded->at(i).unicode();
        const qsizetype length = QChar::isHighSurrogate(unit) ? 2 : 1;
        if (unit < controlNames.size())
            text.append(QString::fromLatin1(controlNames[unit]), ValueStyles::characterWrap);
        else
            text.append(QStringView(*decoded).sliced(i, length), ValueStyles::characterWrap);
        i += length;
    }
    text.append(u"\">", ValueStyles::characterWrap);
    return {text, count};
}

DataRendering::Automatic DataRendering::automatic(const QByteArray &bytes, qint32 machineByteOrder)
{
    if (const std::optional<qsizetype> last = lastByteOfText(bytes))
        return strings(bytes, *last);
    const bool isKnownByteOrder = machineByteOrder != EntryStore::ByteOrderUnknown;
    return {
        StyledText(bracketed(hexadecimalBytes(bytes, isKnownByteOrder)), ValueStyles::fixedPitch),
        0};
}
