#include "model/PropertyText.h"

#include "model/TavRegistryProperty.h"

#include <QVarLengthArray>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace {
using Buffer = QVarLengthArray<char, 4096>;

// In UTF-16 code units with separators, each of which takes three bytes at most.
constexpr qsizetype roomForTable = 1024;
constexpr qsizetype roomForNode = 64;              // a key and a string are shorter nearly always
constexpr qsizetype mostRoom = qsizetype(1) << 28; // for a tree of any size

// Character by character, as the library's searches without regard to case do it; a whole text at
// once would turn some letters into two.
char *writeFolded(QStringView text, char *to)
{
    const char16_t *const units = text.utf16();
    const qsizetype size = text.size();
    qsizetype written = 0;
    for (qsizetype i = 0; i < size;) {
        UChar32 character = units[i];
        if (character < 0x80) {
            const bool isUpper = character >= u'A' && character <= u'Z';
            to[written++] = static_cast<char>(isUpper ? character | 0x20 : character);
            ++i;
            continue;
        }
        U16_NEXT(units, i, size, character);
        U8_APPEND_UNSAFE(to, written, QChar::toCaseFolded(static_cast<char32_t>(character)));
    }
    return to + written;
}

// With a separator behind it.
void appendFolded(Buffer &buffer, QStringView text)
{
    constexpr qsizetype bytesPerUnit = 3; // at most
    const qsizetype size = buffer.size();
    const qsizetype needed = size + bytesPerUnit * text.size() + 1;
    if (needed > buffer.capacity())
        buffer.reserve(std::max(needed, 2 * buffer.capacity()));
    buffer.resize(needed);
    char *end = writeFolded(text, buffer.data() + size);
    *end++ = PropertyText::separator;
    buffer.resize(end - buffer.data());
}

bool isKey(const TavRegistryProperty &node)
{
    return node.parent()->valueType() == RegistryValue::Type::Dictionary;
}

bool holdsString(const TavRegistryProperty &node)
{
    // A terminated copy no longer knows its type.
    return !node.stringView().isNull() && (node.valueType() == RegistryValue::Type::String ||
                                           node.valueType() == RegistryValue::Type::None);
}
} // namespace

PropertyText::PropertyText(const TavRegistryProperty &table)
{
    Buffer keys;
    Buffer strings;
    keys.append(separator);
    strings.append(separator);
    qsizetype used = 0;
    qsizetype room = roomForTable;
    const auto add = [&](Buffer &buffer, QStringView text) {
        if (used + text.size() >= room) {
            isWhole_ = false;
            return;
        }
        used += text.size() + 1;
        appendFolded(buffer, text);
    };
    const auto addNode = [&](const TavRegistryProperty &node, bool hasKey) {
        room = std::min(room + roomForNode, mostRoom);
        if (hasKey)
            add(keys, node.nameView());
        if (holdsString(node))
            add(strings, node.stringView());
    };
    addNode(table, false);
    table.anyBelow([&](const TavRegistryProperty &node) {
        addNode(node, isKey(node));
        return false;
    });
    QByteArray bytes;
    bytes.reserve(keys.size() + strings.size());
    bytes.append(keys.constData(), keys.size());
    bytes.append(strings.constData(), strings.size());
    keysSize_ = static_cast<quint32>(keys.size());
    bytes_ = CompactBytes(std::move(bytes));
}

bool PropertyText::anyKey(const TavRegistryProperty &table, const Predicate &predicate)
{
    return table.anyBelow(
        [&](const TavRegistryProperty &node) { return isKey(node) && predicate(node.nameView()); });
}

bool PropertyText::anyString(const TavRegistryProperty &table, const Predicate &predicate)
{
    const auto satisfies = [&](const TavRegistryProperty &node) {
        return holdsString(node) && predicate(node.stringView());
    };
    return satisfies(table) || table.anyBelow(satisfies);
}

QByteArray PropertyText::folded(QStringView text)
{
    Buffer buffer;
    appendFolded(buffer, text);
    return {buffer.constData(), buffer.size() - 1};
}
