// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributeParser.h"

#include "model/linux/AttributeNumbers.h"
#include "model/linux/AttributeText.h"

#include <QSet>
#include <QUtf8StringView>

namespace {
using namespace AttributeText;
using AttributeNumbers::number;
using AttributeNumbers::numbers;
using Value = RegistryValue;

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
    // A single line of words is usually text, not a pair.
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
        return parseScalar(name, {}, pool);
    if (!text.contains('\n') && !text.contains('='))
        return parseScalar(name, text, pool);
    const Views lines = split(text, '\n');
    Value value = dictionary(lines, pool);
    if (!value.isNone())
        return value;
    return lines.size() > 1 ? parseLines(name, lines, pool) : parseScalar(name, text, pool);
}
