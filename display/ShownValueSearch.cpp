// SPDX-License-Identifier: Apache-2.0
#include "display/ShownValueSearch.h"

#include "display/DataRendering.h"
#include "display/NumberRendering.h"
#include "display/TavPropertyOutlineItem.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"

#include <QVarLengthArray>

namespace {
using Type = RegistryValue::Type;

bool isHexDigit(QChar character)
{
    const char16_t lower = character.unicode() | 0x20;
    return (character >= u'0' && character <= u'9') || (lower >= u'a' && lower <= u'f');
}

std::optional<quint64> unsignedNumber(QStringView text)
{
    const struct
    {
        QLatin1StringView prefix;
        int base;
    } notations[] = {{QLatin1StringView("0x"), 16},
                     {QLatin1StringView("0b"), 2},
                     {QLatin1StringView("0o"), 8},
                     {QLatin1StringView(""), 10}};
    for (const auto &[prefix, base] : notations) {
        if (!text.startsWith(prefix, Qt::CaseInsensitive))
            continue;
        const QStringView digits = text.sliced(prefix.size());
        bool isNumber = std::all_of(digits.begin(), digits.end(), isHexDigit);
        const quint64 number = isNumber ? digits.toULongLong(&isNumber, base) : 0;
        if (isNumber)
            return number;
    }
    return std::nullopt;
}

std::optional<RegistryValue> numberIn(QStringView text)
{
    text = text.trimmed();
    const bool isNegative = text.startsWith(u'-');
    const std::optional<quint64> number = unsignedNumber(text.sliced(isNegative));
    constexpr quint64 maxMagnitude = quint64(1) << 63;
    if (!number || (isNegative && *number > maxMagnitude))
        return std::nullopt;
    return RegistryValue::number(isNegative ? 0 - *number : *number, 8, isNegative);
}

// Whether the query, in lower case, can be a part of "<01 ef>", or of "<?? ??>".
bool canBeInBytes(QByteArrayView query)
{
    const bool isStart = query.startsWith('<');
    const bool isEnd = query.endsWith('>');
    query = query.sliced(isStart, std::max<qsizetype>(0, query.size() - isStart - isEnd));
    for (qsizetype phase = 0; phase < (isStart ? 1 : 3); ++phase) {
        qsizetype at = phase; // in groups of two digits and a space
        const bool isInGroups = std::all_of(query.begin(), query.end(), [&](char character) {
            const bool isDigit = at++ % 3 < 2;
            return isDigit ? character == '?' || isHexDigit(QLatin1Char(character))
                           : character == ' ';
        });
        if (isInGroups && (!isEnd || query.isEmpty() || at % 3 == 2))
            return true;
    }
    return false;
}

bool hasEitherCase(QByteArrayView bytes, char lower)
{
    const bool isLetter = lower >= 'a' && lower <= 'z';
    return bytes.contains(lower) || (isLetter && bytes.contains(static_cast<char>(lower & ~0x20)));
}
} // namespace

ShownValueSearch::ShownValueSearch(const QString &query)
    : matcher_(query, Qt::CaseInsensitive)
    , number_(numberIn(query))
    , isInTrue_(isIn(TavPropertyOutlineItem::truthText(true)))
    , isInFalse_(isIn(TavPropertyOutlineItem::truthText(false)))
    , isInOther_(isIn(TavPropertyOutlineItem::unknownTypeText()))
{
    const QString illegal = NumberRendering::text(RegistryValue::number(0, 0),
                                                  {.unit = PropertyFormatOptions::automatic}, 0);
    canBeInOthers_ = number_ || isInTrue_ || isInFalse_ || isInOther_ || isIn(illegal);
    const bool isAscii = std::all_of(query.begin(), query.end(),
                                     [](QChar character) { return character.unicode() < 0x80; });
    if (!isAscii || query.isEmpty())
        return;
    lower_ = query.toLower().toLatin1();
    constexpr QByteArrayView inNumbers = "0123456789abcdefx-";
    if (std::all_of(lower_.begin(), lower_.end(), [&](char c) { return inNumbers.contains(c); }))
        digits_ = lower_.toStdString();
    canBeInOthers_ |= !digits_.empty();
    canBeInBytes_ = canBeInBytes(lower_);
    const auto letter = std::find_if(lower_.begin(), lower_.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z');
    });
    letter_ = letter == lower_.end() ? '\0' : *letter;
}

bool ShownValueSearch::isIn(const QString &text) const
{
    return !matcher_.pattern().isEmpty() && matcher_.indexIn(text) >= 0;
}

bool ShownValueSearch::operator()(const TavRegistryEntry &entry)
{
    if (!entry.hasProperties())
        return false;
    const qint32 byteOrder =
        entry.dataStore() ? entry.dataStore()->byteOrder() : EntryStore::ByteOrderUnknown;
    const FormatSnapshot::ByPath &formats = formats_.formatsOf(entry.inheritance());
    if (formats.isEmpty())
        return matchesAny(entry.propertyText().values(), byteOrder);
    return entry.table().isNone() ? matchesInTree(*entry.properties(), formats, byteOrder)
                                  : matchesInTable(entry.table(), formats, byteOrder);
}

// Reads no more of the list than can match: most of a search's time is waiting for memory.
bool ShownValueSearch::matchesAny(std::span<const RegistryValue> values, qint32 byteOrder) const
{
    const PropertyFormatOptions &format = formats_.defaultFormat();
    const auto matchesOne = [&](const RegistryValue &value) {
        return matches(value, format, byteOrder);
    };
    if (format.unit != PropertyFormatOptions::automatic)
        return std::any_of(values.begin(), values.end(), matchesOne);
    const auto isOther = [](const RegistryValue &value) { return value.type() != Type::Data; };
    auto begin = values.begin(); // of what is not data
    while (begin != values.end() && !isOther(*begin)) {
        if (matchesOne(*begin++))
            return true;
    }
    auto end = values.end(); // of what is not data
    while (canBeInBytes_ && end != begin && !isOther(*(end - 1)))
        __builtin_prefetch((--end)->dataView().data());
    for (auto value = begin; canBeInOthers_ && value != end && isOther(*value); ++value) {
        if (matchesOne(*value))
            return true;
    }
    return std::any_of(end, values.end(), matchesOne);
}

bool ShownValueSearch::matchesInTable(const RegistryValue &table,
                                      const FormatSnapshot::ByPath &formats, qint32 byteOrder) const
{
    struct Place
    {
        const RegistryValue *value;
        QString path;
        PropertyFormatOptions format;
    };
    const QString top = QStringLiteral("/");
    std::vector<Place> pending{{&table, top, formats.value(top, formats_.defaultFormat())}};
    while (!pending.empty()) {
        const Place place = pending.back();
        pending.pop_back();
        if (!place.value->isCollection()) {
            if (matches(*place.value, place.format, byteOrder))
                return true;
            continue;
        }
        for (const auto &[key, value] : place.value->members()) {
            const QString path = place.path + u'/' + key.toOwner();
            pending.push_back({&value, path, formats.value(path, place.format)});
        }
        if (place.value->type() == Type::Set)
            continue;
        const QString path = place.path + QLatin1StringView("[0]"); // every element's
        for (const RegistryValue &value : place.value->elements())
            pending.push_back({&value, path, formats.value(path, place.format)});
    }
    return false;
}

bool ShownValueSearch::matchesInTree(const TavRegistryProperty &tree,
                                     const FormatSnapshot::ByPath &formats, qint32 byteOrder) const
{
    const auto formatOf = [&](const TavRegistryProperty &node) {
        for (const auto *at = &node; at && !formats.isEmpty(); at = at->parent()) {
            const auto stored = formats.constFind(at->propertyPath());
            if (stored != formats.constEnd())
                return *stored;
        }
        return formats_.defaultFormat();
    };
    return tree.anyBelow([&](const TavRegistryProperty &node) {
        return !node.isCollection() && matches(node.value(), formatOf(node), byteOrder);
    });
}

bool ShownValueSearch::matches(const RegistryValue &value, const PropertyFormatOptions &format,
                               qint32 byteOrder) const
{
    switch (value.type()) {
    case Type::Number:
        return matchesNumber(value, format, byteOrder);
    case Type::Data:
        return matchesData(value, format, byteOrder);
    case Type::Boolean:
        return value.toBoolean() ? isInTrue_ : isInFalse_;
    case Type::Date:
        return isInOther_;
    default:
        return false;
    }
}

bool ShownValueSearch::matchesNumber(const RegistryValue &number,
                                     const PropertyFormatOptions &format, qint32 byteOrder) const
{
    if (number_ && RegistryValue::compareNumbers(number, *number_) == 0)
        return true;
    if (format.unit == PropertyFormatOptions::useDefault)
        return false; // shown as an error
    if (format.unit != PropertyFormatOptions::automatic || number.numberWidth() == 0)
        return isIn(NumberRendering::text(number, format, byteOrder));
    if (digits_.empty())
        return false;
    NumberRendering::Buffer buffer;
    const QByteArrayView text = NumberRendering::automatic(number, buffer);
    return std::string_view(text.data(), text.size()).find(digits_) != std::string_view::npos;
}

bool ShownValueSearch::matchesData(const RegistryValue &data, const PropertyFormatOptions &format,
                                   qint32 byteOrder) const
{
    if (format.unit == PropertyFormatOptions::characters)
        return isIn(DataRendering::characters(data.toData(), format.encoding).text.text());
    if (format.unit != PropertyFormatOptions::automatic &&
        format.unit != PropertyFormatOptions::useDefault)
        return isIn(DataRendering::integers(data.toData(), format, byteOrder).text.text());
    const QByteArrayView bytes = data.dataView();
    if (!DataRendering::looksLikeText(bytes))
        return canBeInBytes_ && DataRendering::hexadecimal(bytes, byteOrder).contains(lower_);
    return (letter_ == '\0' || hasEitherCase(bytes, letter_)) &&
           isIn(DataRendering::automatic(data.toData(), byteOrder).text.text());
}
