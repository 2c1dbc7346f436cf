// SPDX-License-Identifier: Apache-2.0
#include "model/PropertyText.h"

#include "model/TavRegistryProperty.h"

#include <QVarLengthArray>
#include <array>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace {
using Buffer = QVarLengthArray<char, 4096>;

// In UTF-16 units with separators, each at most three bytes.
constexpr qsizetype roomForTable = 1024;
constexpr qsizetype roomForNode = 64;             // a key and a string are nearly always shorter
constexpr qsizetype maxRoom = qsizetype(1) << 28; // for a tree of any size

// Per character, like Qt's case-insensitive search; folding a whole text would turn some letters
// into two.
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

// Followed by a separator.
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
    // A terminated copy has lost its type.
    return !node.stringView().isNull() && (node.valueType() == RegistryValue::Type::String ||
                                           node.valueType() == RegistryValue::Type::None);
}
} // namespace

// Collects the texts of a tree, node by node.
class PropertyText::Builder
{
public:
    Builder()
    {
        keys_.append(separator);
        strings_.append(separator);
    }

    void addNode() { room_ = std::min(room_ + roomForNode, maxRoom); }
    void addKey(QStringView text) { add(keys_, text); }
    void addString(QStringView text) { add(strings_, text); }
    void addValue(const RegistryValue &value)
    {
        switch (value.type()) {
        case RegistryValue::Type::Number:
        case RegistryValue::Type::Date:
            values_.push_back(value);
            break;
        case RegistryValue::Type::Boolean:
            hasBoolean_[value.toBoolean()] = true;
            break;
        case RegistryValue::Type::Data:
            (value.dataView().endsWith('\0') ? terminatedData_ : otherData_).push_back(value);
            break;
        default:
            break;
        }
    }

    void finish(PropertyText &text) const
    {
        text.keys_ = sharedBytes(keys_);
        text.strings_ = CompactBytes(QByteArray(strings_.constData(), strings_.size()));
        text.isWhole_ = isWhole_;
        text.values_ = values();
    }

private:
    std::vector<RegistryValue> values() const
    {
        std::vector<RegistryValue> all;
        all.reserve(static_cast<std::size_t>(terminatedData_.size() + values_.size() +
                                             hasBoolean_[false] + hasBoolean_[true] +
                                             otherData_.size()));
        all.assign(terminatedData_.begin(), terminatedData_.end());
        all.insert(all.end(), values_.begin(), values_.end());
        for (const bool truth : {false, true}) {
            if (hasBoolean_[truth])
                all.push_back(RegistryValue::boolean(truth));
        }
        all.insert(all.end(), otherData_.begin(), otherData_.end());
        return all;
    }

    // Shared with recent ones: many trees have the same keys. The cache is global, so that entries
    // of all stores share, and per thread, so that it needs no lock.
    static CompactBytes sharedBytes(const Buffer &bytes)
    {
        static thread_local std::array<CompactBytes, 256> known;
        const QByteArrayView view(bytes.constData(), bytes.size());
        CompactBytes &slot = known[qHash(view) % known.size()];
        if (QByteArrayView(slot.data(), slot.size()) != view)
            slot = CompactBytes(view.toByteArray());
        return slot;
    }

    void add(Buffer &buffer, QStringView text)
    {
        if (used_ + text.size() >= room_) {
            isWhole_ = false;
            return;
        }
        used_ += text.size() + 1;
        appendFolded(buffer, text);
    }

    Buffer keys_;
    Buffer strings_;
    QVarLengthArray<RegistryValue, 64> values_;
    QVarLengthArray<RegistryValue, 16> terminatedData_;
    QVarLengthArray<RegistryValue, 16> otherData_;
    std::array<bool, 2> hasBoolean_{};
    qsizetype used_ = 0;
    qsizetype room_ = roomForTable;
    bool isWhole_ = true;
};

PropertyText::PropertyText(const TavRegistryProperty &table)
{
    Builder builder;
    const auto addNode = [&](const TavRegistryProperty &node, bool hasKey) {
        builder.addNode();
        if (hasKey)
            builder.addKey(node.nameView());
        if (holdsString(node))
            builder.addString(node.stringView());
        else if (!node.isCollection())
            builder.addValue(node.value());
    };
    addNode(table, false);
    table.anyBelow([&](const TavRegistryProperty &node) {
        addNode(node, isKey(node));
        return false;
    });
    builder.finish(*this);
}

PropertyText::PropertyText(const RegistryValue &table)
{
    Builder builder;
    QVarLengthArray<const RegistryValue *, 32> pending;
    const auto addValue = [&](const RegistryValue &value) {
        if (!value.stringView().isNull())
            builder.addString(value.stringView());
        else
            builder.addValue(value);
        if (value.isCollection() && value.type() != RegistryValue::Type::Set)
            pending.append(&value);
    };
    builder.addNode();
    addValue(table);
    while (!pending.isEmpty()) {
        const RegistryValue &collection = *pending.last();
        pending.removeLast();
        for (const auto &[key, value] : collection.members()) {
            builder.addNode();
            builder.addKey({key.data(), key.size()});
            addValue(value);
        }
        for (const RegistryValue &value : collection.elements()) {
            builder.addNode();
            addValue(value);
        }
    }
    builder.finish(*this);
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
