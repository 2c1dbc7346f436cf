#include "model/linux/AttributeParser.h"

#include <QList>
#include <QUtf8StringView>
#include <charconv>
#include <optional>

namespace {
using View = QByteArrayView;
using Views = QVarLengthArray<View, 32>;
using Value = RegistryValue;

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

View trimmed(View text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

Views split(View text, char separator)
{
    Views parts;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            parts.append(text.sliced(start, i - start));
            start = i + 1;
        }
    }
    return parts;
}

Views words(View text)
{
    Views parts;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool blank = i == text.size() || isBlank(text[i]);
        if (!blank && start < 0) {
            start = i;
        } else if (blank && start >= 0) {
            parts.append(text.sliced(start, i - start));
            start = -1;
        }
    }
    return parts;
}

int widthOfHexDigits(qsizetype digits)
{
    return digits <= 2 ? 1 : digits <= 4 ? 2 : digits <= 8 ? 4 : 8;
}

std::optional<quint64> parseUnsigned(View digits, int base)
{
    quint64 number = 0;
    const auto result = std::from_chars(digits.begin(), digits.end(), number, base);
    if (result.ec != std::errc() || result.ptr != digits.end())
        return std::nullopt;
    return number;
}

Value hexNumber(View text)
{
    constexpr qsizetype mostDigits = 16;
    const View digits = text.sliced(2);
    if (digits.isEmpty() || digits.size() > mostDigits ||
        !std::all_of(digits.begin(), digits.end(), isHexDigit))
        return {};
    return Value::number(parseUnsigned(digits, 16).value_or(0), widthOfHexDigits(digits.size()));
}

// A number as a program would print it: no leading zeros, no plus sign.
Value decimalNumber(View text)
{
    const bool negative = text.startsWith('-');
    const View digits = negative ? text.sliced(1) : text;
    if (digits.isEmpty() || !isDigit(digits.front()) ||
        (digits.front() == '0' && (digits.size() > 1 || negative)))
        return {};
    const auto number = parseUnsigned(digits, 10);
    if (!number)
        return {};
    if (!negative)
        return Value::number(*number, *number <= 0xffffffff ? 4 : 8);
    constexpr quint64 smallest = quint64(1) << 63;
    if (*number > smallest)
        return {};
    return Value::number(0 - *number, *number <= quint64(1) << 31 ? 4 : 8, true);
}

Value number(View text)
{
    if (text.isEmpty())
        return {};
    return text.startsWith("0x") ? hexNumber(text) : decimalNumber(text);
}

Value string(View text, TextPool &pool)
{
    constexpr qsizetype shortText = 24;
    return Value::string(text.size() <= shortText ? pool.text(text).toOwner()
                                                  : QString::fromUtf8(text));
}

// The numbers of a line of several; empty when any word is none.
Value::Elements numbers(View line)
{
    Value::Elements values;
    for (const View word : words(line)) {
        Value value = number(word);
        if (value.isNone())
            return {};
        values.push_back(std::move(value));
    }
    return values;
}

bool isUsbIdentifier(View name)
{
    return name == "idVendor" || name == "idProduct" || name == "bcdDevice";
}

// Printed in hexadecimal without a prefix, so that their digits may look like a decimal number.
bool isBareHexadecimal(View name, View text)
{
    static const QSet<QByteArray> names{"PCI_CLASS",
                                        "bDeviceClass",
                                        "bDeviceProtocol",
                                        "bDeviceSubClass",
                                        "bEndpointAddress",
                                        "bInterfaceClass",
                                        "bInterfaceNumber",
                                        "bInterfaceProtocol",
                                        "bInterfaceSubClass",
                                        "bLength",
                                        "bNumEndpoints",
                                        "bmAttributes",
                                        "bustype",
                                        "core_cpus",
                                        "core_siblings",
                                        "cpumap",
                                        "die_cpus",
                                        "local_cpus",
                                        "package_cpus",
                                        "product",
                                        "shared_cpu_map",
                                        "thread_siblings",
                                        "vendor",
                                        "wMaxPacketSize"};
    return names.contains(QByteArray::fromRawData(name.data(), name.size())) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isHexDigit(c) || c == ','; });
}

// "0-3,8": numbers and ranges.
Value rangeList(View text, TextPool &pool)
{
    const bool isList = std::all_of(text.begin(), text.end(),
                                    [](char c) { return isDigit(c) || c == '-' || c == ','; });
    if (!isList || !isDigit(text.front()))
        return {};
    Value::Elements ranges;
    for (const View range : split(text, ',')) {
        Value value = decimalNumber(range);
        ranges.push_back(value.isNone() ? string(range, pool) : std::move(value));
    }
    return Value::array(std::move(ranges));
}

// "a [b] c": one of several choices is selected.
Value selection(View text, TextPool &pool)
{
    Value selected;
    Value::Elements choices;
    for (View word : words(text)) {
        if (word.size() > 2 && word.startsWith('[') && word.endsWith(']')) {
            if (!selected.isNone())
                return {};
            word = word.sliced(1, word.size() - 2);
            selected = string(word, pool);
        }
        choices.push_back(string(word, pool));
    }
    if (selected.isNone())
        return {};
    return Value::dictionary({{pool.text("choices"), Value::array(std::move(choices))},
                              {pool.text("selected"), std::move(selected)}});
}

struct Pair
{
    View key;
    View value;
};

bool isKeyCharacter(char c)
{
    return isDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '-' ||
           c == '.' || c == ':' || c == '(' || c == ')';
}

bool isKey(View text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), isKeyCharacter);
}

std::optional<Pair> assignment(View line)
{
    const qsizetype sign = line.indexOf('=');
    if (sign <= 0 || !isKey(line.first(sign)))
        return std::nullopt;
    return Pair{line.first(sign), line.sliced(sign + 1)};
}

std::optional<Pair> label(View line)
{
    const qsizetype colon = line.indexOf(": ");
    if (colon <= 0 && !line.endsWith(':'))
        return std::nullopt;
    const qsizetype end = colon > 0 ? colon : line.size() - 1;
    if (end <= 0)
        return std::nullopt;
    return Pair{trimmed(line.first(end)), trimmed(line.sliced(end + 1))};
}

// "pages 12" or "size 12 kB".
std::optional<Pair> count(View line)
{
    const Views parts = words(line);
    if (parts.size() < 2 || parts.size() > 3 || !isKey(parts[0]) || isDigit(parts[0].front()) ||
        number(parts[1]).isNone() || (parts.size() == 3 && !number(parts[2]).isNone()))
        return std::nullopt;
    return Pair{parts[0], trimmed(View(parts[1].begin(), parts.back().end()))};
}

// All lines of one form, no key twice; else none.
template<class PairOf>
Value dictionary(const Views &lines, PairOf pairOf, TextPool &pool)
{
    QVarLengthArray<Pair, 32> pairs;
    for (const View line : lines) {
        const auto pair = pairOf(line);
        if (!pair)
            return {};
        pairs.append(*pair);
    }
    QSet<View> keys;
    for (const Pair &pair : pairs)
        keys.insert(pair.key);
    if (keys.size() != pairs.size())
        return {};
    Value::Members members;
    members.reserve(static_cast<std::size_t>(pairs.size()));
    for (const Pair &pair : pairs)
        members.push_back({pool.text(pair.key), parseScalar(pair.key, pair.value, pool)});
    return Value::dictionary(std::move(members));
}

Value dictionary(const Views &lines, TextPool &pool)
{
    Value value = dictionary(lines, assignment, pool);
    // A single line of words is more often a text than a pair.
    if (value.isNone() && lines.size() > 1)
        value = dictionary(lines, label, pool);
    if (value.isNone() && lines.size() > 1)
        value = dictionary(lines, count, pool);
    return value;
}

Value table(const Views &lines)
{
    Value::Elements rows;
    std::size_t columns = 0;
    for (const View line : lines) {
        Value::Elements row = numbers(line);
        if (row.size() < 2 || (columns && row.size() != columns))
            return {};
        columns = row.size();
        rows.push_back(Value::array(std::move(row)));
    }
    return Value::array(std::move(rows));
}

bool isText(View bytes)
{
    return !bytes.contains('\0') && QUtf8StringView(bytes.data(), bytes.size()).isValidUtf8();
}

Value parseLines(View name, const Views &lines, TextPool &pool)
{
    Value value = table(lines);
    if (!value.isNone())
        return value;
    Value::Elements elements;
    for (const View line : lines)
        elements.push_back(parseScalar(name, line, pool));
    return Value::array(std::move(elements));
}
} // namespace

CompactString TextPool::text(QByteArrayView utf8)
{
    const QByteArray key = QByteArray::fromRawData(utf8.data(), utf8.size());
    const auto known = texts_.constFind(key);
    if (known != texts_.constEnd())
        return *known;
    constexpr qsizetype mostTexts = 100000;
    if (texts_.size() >= mostTexts)
        texts_.clear();
    return *texts_.insert(utf8.toByteArray(), CompactString(QString::fromUtf8(utf8)));
}

RegistryValue parseAttribute(QByteArrayView name, QByteArrayView bytes, TextPool &pool)
{
    if (!isText(bytes))
        return Value::data(bytes.toByteArray());
    View text = bytes;
    if (text.endsWith('\n'))
        text.chop(1);
    if (text.isEmpty() && name == "uevent")
        return Value::dictionary({});
    if (text.isEmpty() || text == "(null)")
        return string({}, pool);
    if (!text.contains('\n') && !text.contains('='))
        return parseScalar(name, text, pool);
    const Views lines = split(text, '\n');
    Value value = dictionary(lines, pool);
    if (!value.isNone())
        return value;
    return lines.size() > 1 ? parseLines(name, lines, pool) : parseScalar(name, text, pool);
}

RegistryValue parseScalar(QByteArrayView name, QByteArrayView text, TextPool &pool)
{
    if (text.isEmpty())
        return string(text, pool);
    Value value;
    if (isUsbIdentifier(name)) {
        if (text.size() == 4 && std::all_of(text.begin(), text.end(), isHexDigit))
            return Value::number(parseUnsigned(text, 16).value_or(0), 2);
    } else if (isDigit(text.front()) && isBareHexadecimal(name, text)) {
        return string(text, pool);
    } else if (name.endsWith("_list")) {
        value = rangeList(text, pool);
    }
    if (value.isNone() && text.contains('['))
        value = selection(text, pool);
    if (value.isNone())
        value = number(text);
    if (value.isNone() && (text == "Y" || text == "N"))
        value = Value::boolean(text == "Y");
    if (value.isNone() && text.contains(' ')) {
        Value::Elements list = numbers(text);
        if (list.size() > 1)
            value = Value::array(std::move(list));
    }
    return value.isNone() ? string(text, pool) : value;
}
