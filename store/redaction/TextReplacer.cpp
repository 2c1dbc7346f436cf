// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/TextReplacer.h"

#include <algorithm>

namespace {
constexpr int bitsOfStarts = 16;
} // namespace

TextReplacer::TextReplacer()
    : starts_(qsizetype(1) << bitsOfStarts)
{}

void TextReplacer::add(const QString &text, const QString &replacement, bool wholeWord)
{
    const QString key = folded(text);
    if (key.size() < minLength || replacements_.contains(key))
        return;
    replacements_.insert(key, {replacement, wholeWord});
    const quint64 start = startOf(key);
    starts_.setBit(bitOf(start));
    std::vector<qsizetype> &lengths = lengths_[start];
    const auto place = std::lower_bound(lengths.begin(), lengths.end(), key.size(), std::greater());
    if (place == lengths.end() || *place != key.size())
        lengths.insert(place, key.size());
}

QString TextReplacer::apply(const QString &text) const
{
    QString replaced;
    qsizetype done = 0;
    forEachMatch(text, [&](qsizetype start, qsizetype length, const QString &replacement) {
        replaced += QStringView(text).sliced(done, start - done);
        replaced += replacement;
        done = start + length;
    });
    if (done == 0)
        return text;
    return replaced += QStringView(text).sliced(done);
}

void TextReplacer::forEachMatch(QStringView text, const Match &match) const
{
    if (replacements_.isEmpty() || text.size() < minLength)
        return;
    const QString key = folded(text);
    for (qsizetype at = 0; at + minLength <= key.size();) {
        qsizetype length = 1;
        if (const Replacement *const found = find(key, at, length))
            match(at, length, found->text);
        at += length;
    }
}

// Sets the length if there is one.
const TextReplacer::Replacement *TextReplacer::find(const QString &folded, qsizetype at,
                                                    qsizetype &length) const
{
    const quint64 start = startOf(QStringView(folded).sliced(at));
    if (!starts_.testBit(bitOf(start)))
        return nullptr;
    const auto lengths = lengths_.constFind(start);
    if (lengths == lengths_.constEnd())
        return nullptr;
    const auto isBorder = [&](qsizetype place) {
        return place < 0 || place >= folded.size() || !folded[place].isLetterOrNumber();
    };
    for (const qsizetype candidate : *lengths) {
        if (at + candidate > folded.size())
            continue;
        const auto found =
            replacements_.constFind(QString::fromRawData(folded.constData() + at, candidate));
        if (found == replacements_.constEnd() ||
            (found->wholeWord && !(isBorder(at - 1) && isBorder(at + candidate))))
            continue;
        length = candidate;
        return &*found;
    }
    return nullptr;
}

// Per character, because lower-casing a whole text may change its length.
QString TextReplacer::folded(QStringView text)
{
    QString folded(text.size(), Qt::Uninitialized);
    std::transform(text.begin(), text.end(), folded.begin(), [](QChar c) { return c.toLower(); });
    return folded;
}

quint64 TextReplacer::startOf(QStringView folded)
{
    quint64 start = 0;
    for (qsizetype i = 0; i < minLength; ++i)
        start = start << 16 | folded[i].unicode();
    return start;
}

qsizetype TextReplacer::bitOf(quint64 start)
{
    constexpr quint64 spread = 0x9E3779B97F4A7C15; // the golden ratio, for multiplicative hashing
    return static_cast<qsizetype>(start * spread >> (64 - bitsOfStarts));
}
