// SPDX-License-Identifier: Apache-2.0
#include "platform/text/TextEncodings.h"

#include "platform/text/KelRoman.h"

#include <QCoreApplication>
#include <langinfo.h>
#include <unicode/ucnv.h>
#include <unordered_map>

namespace {
enum class Script {
    Unicode,
    Western,
    CentralEuropean,
    SouthEuropean,
    Nordic,
    Baltic,
    Celtic,
    Cyrillic,
    Greek,
    Turkish,
    Hebrew,
    Arabic,
    Thai,
    Vietnamese,
    Japanese,
    Korean,
    SimplifiedChinese,
    TraditionalChinese,
};

struct CharacterSet
{
    quint32 mib;
    const char *name;
    Script script;
    bool isEightBit;
};

constexpr CharacterSet characterSets[] = {
#include "CharacterSets.inc"
};

struct Encoding
{
    Script script;
    bool isEightBit;
    const char *converter; // null: decoded in this file
    QString title;
};

using EncodingTable = std::unordered_map<quint32, Encoding>;

struct CloseConverter
{
    void operator()(UConverter *converter) const { ucnv_close(converter); }
};
using ConverterPointer = std::unique_ptr<UConverter, CloseConverter>;

// The converters take 32-bit sizes; a byte gives at most two units, except in rare encodings.
constexpr qsizetype maxTextSize = 1 << 29;

quint32 numberOf(quint32 mib)
{
    switch (mib) {
    case 3:
        return TextEncodings::ascii;
    case 106:
        return TextEncodings::utf8;
    case 4:
        return TextEncodings::isoLatin1;
    case 1015:
        return TextEncodings::utf16;
    case 2252:
        return TextEncodings::windowsLatin1;
    default:
        return 65536 + mib;
    }
}

QString titleOf(quint32 number, const char *name)
{
    switch (number) {
    case TextEncodings::ascii:
        return QStringLiteral("ASCII");
    case TextEncodings::isoLatin1:
        return QStringLiteral("ISO Latin 1");
    case TextEncodings::windowsLatin1:
        return QStringLiteral("Windows Latin 1");
    default:
        return QString::fromLatin1(name);
    }
}

ConverterPointer openConverter(const char *name)
{
    UErrorCode error = U_ZERO_ERROR;
    ConverterPointer converter(ucnv_open(name, &error));
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr,
                        &error);
    return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

EncodingTable makeTable()
{
    EncodingTable table;
    table.insert(
        {TextEncodings::kelRoman, {Script::Western, true, nullptr, QStringLiteral("KelRoman")}});
    for (const CharacterSet &set : characterSets) {
        const quint32 number = numberOf(set.mib);
        if (openConverter(set.name))
            table.insert(
                {number, {set.script, set.isEightBit, set.name, titleOf(number, set.name)}});
    }
    return table;
}

const EncodingTable &encodings()
{
    static const EncodingTable table = makeTable();
    return table;
}

const Encoding *find(quint32 number)
{
    const auto it = encodings().find(number);
    return it != encodings().end() ? &it->second : nullptr;
}

QString scriptName(Script script)
{
    static constexpr const char *names[] = {
        QT_TRANSLATE_NOOP("Encodings", "Unicode"),
        QT_TRANSLATE_NOOP("Encodings", "Western"),
        QT_TRANSLATE_NOOP("Encodings", "Central European"),
        QT_TRANSLATE_NOOP("Encodings", "South European"),
        QT_TRANSLATE_NOOP("Encodings", "Nordic"),
        QT_TRANSLATE_NOOP("Encodings", "Baltic"),
        QT_TRANSLATE_NOOP("Encodings", "Celtic"),
        QT_TRANSLATE_NOOP("Encodings", "Cyrillic"),
        QT_TRANSLATE_NOOP("Encodings", "Greek"),
        QT_TRANSLATE_NOOP("Encodings", "Turkish"),
        QT_TRANSLATE_NOOP("Encodings", "Hebrew"),
        QT_TRANSLATE_NOOP("Encodings", "Arabic"),
        QT_TRANSLATE_NOOP("Encodings", "Thai"),
        QT_TRANSLATE_NOOP("Encodings", "Vietnamese"),
        QT_TRANSLATE_NOOP("Encodings", "Japanese"),
        QT_TRANSLATE_NOOP("Encodings", "Korean"),
        QT_TRANSLATE_NOOP("Encodings", "Simplified Chinese"),
        QT_TRANSLATE_NOOP("Encodings", "Traditional Chinese"),
    };
    return QCoreApplication::translate("Encodings", names[static_cast<std::size_t>(script)]);
}

// The registered name of an encoding; empty for an unknown one.
QByteArrayView registeredName(const char *name)
{
    UErrorCode error = U_ZERO_ERROR;
    return QByteArrayView(ucnv_getCanonicalName(name, "IANA", &error));
}

// Cached, because opening a converter reads its tables.
UConverter *converterOf(quint32 number, const Encoding &encoding)
{
    static std::unordered_map<quint32, ConverterPointer> converters;
    ConverterPointer &converter = converters[number];
    if (!converter)
        converter = openConverter(encoding.converter);
    return converter.get();
}

std::optional<QString> convert(UConverter *converter, QByteArrayView bytes)
{
    QString text(bytes.size(), Qt::Uninitialized);
    for (;;) {
        UErrorCode error = U_ZERO_ERROR;
        const int32_t length = ucnv_toUChars(converter, reinterpret_cast<char16_t *>(text.data()),
                                             static_cast<int32_t>(text.size()), bytes.data(),
                                             static_cast<int32_t>(bytes.size()), &error);
        if (error == U_BUFFER_OVERFLOW_ERROR && length > text.size()) {
            text.resize(length);
            continue;
        }
        if (U_FAILURE(error))
            return std::nullopt;
        text.resize(length);
        return text;
    }
}
} // namespace

const std::vector<quint32> &TextEncodings::available()
{
    static const std::vector<quint32> numbers = [] {
        std::vector<quint32> list;
        for (const auto &[number, encoding] : encodings())
            list.push_back(number);
        std::sort(list.begin(), list.end());
        return list;
    }();
    return numbers;
}

QString TextEncodings::displayName(quint32 encoding)
{
    const Encoding *found = find(encoding);
    return found ? QStringLiteral("%1 (%2)").arg(scriptName(found->script), found->title)
                 : QString();
}

quint32 TextEncodings::mostCompatibleLegacyEncoding(quint32 encoding)
{
    const Encoding *found = find(encoding);
    if (!found)
        return none;
    if (found->script == Script::Unicode)
        return utf16;
    for (const quint32 candidate : available()) {
        const Encoding &other = *find(candidate);
        if (other.script == found->script && other.isEightBit)
            return candidate;
    }
    return encoding;
}

quint32 TextEncodings::cStringEncoding()
{
    const QByteArrayView codeset = registeredName(nl_langinfo(CODESET));
    for (const CharacterSet &set : characterSets) {
        if (!codeset.isEmpty() && registeredName(set.name) == codeset && find(numberOf(set.mib)))
            return numberOf(set.mib);
    }
    return none;
}

std::optional<QString> TextEncodings::decode(QByteArrayView bytes, quint32 encoding)
{
    const Encoding *found = find(encoding);
    if (!found || bytes.size() > maxTextSize)
        return std::nullopt;
    if (!found->converter)
        return KelRoman::decode(bytes);
    UConverter *converter = converterOf(encoding, *found);
    return converter ? convert(converter, bytes) : std::nullopt;
}
