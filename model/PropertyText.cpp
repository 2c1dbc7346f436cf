#include "model/PropertyText.h"

#include "model/TavRegistryProperty.h"

#include <QVarLengthArray>

namespace {
using Buffer = QVarLengthArray<char, 4096>;

char *writeUtf8(char32_t character, char *to)
{
    const auto leading = [&](unsigned mark, int shift) {
        *to++ = static_cast<char>(mark | character >> shift);
    };
    const auto following = [&](int shift) {
        *to++ = static_cast<char>(0x80 | (character >> shift & 0x3f));
    };
    if (character < 0x80) {
        leading(0, 0);
        return to;
    }
    if (character < 0x800) {
        leading(0xc0, 6);
    } else if (character < 0x10000) {
        leading(0xe0, 12);
        following(6);
    } else {
        leading(0xf0, 18);
        following(12);
        following(6);
    }
    following(0);
    return to;
}

char *writeFolded(QStringView text, char *to)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i].unicode();
        if (unit < 0x80) {
            const bool isUpper = unit >= u'A' && unit <= u'Z';
            *to++ = static_cast<char>(isUpper ? unit | 0x20 : unit);
            continue;
        }
        char32_t character = unit;
        if (QChar::isHighSurrogate(unit) && i + 1 < text.size() && text[i + 1].isLowSurrogate())
            character = QChar::surrogateToUcs4(unit, text[++i].unicode());
        to = writeUtf8(QChar::toCaseFolded(character), to);
    }
    return to;
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
    const auto addNode = [&](const TavRegistryProperty &node, bool hasKey) {
        if (hasKey)
            appendFolded(keys, node.nameView());
        if (holdsString(node))
            appendFolded(strings, node.stringView());
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

QByteArray PropertyText::folded(QStringView text)
{
    Buffer buffer;
    appendFolded(buffer, text);
    return {buffer.constData(), buffer.size() - 1};
}
