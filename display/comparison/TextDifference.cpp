// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/TextDifference.h"

#include <algorithm>

namespace {
constexpr qsizetype maxWord = 16;     // a longer run of letters and digits is several words
constexpr std::size_t maxWords = 200; // of a text that is compared by words
constexpr qsizetype maxText = 4096;
constexpr qsizetype context = 24; // characters around a change in an excerpt

using Words = std::vector<QStringView>;

// Halves of a pair and marks belong to what is before them.
bool isInWord(QChar character)
{
    return character.isLetterOrNumber() || character.isSurrogate() || character.isMark();
}

bool isBorder(QStringView text, qsizetype at)
{
    return at <= 0 || at >= text.size() || !isInWord(text[at - 1]) || !isInWord(text[at]);
}

bool splitsPair(QStringView text, qsizetype at)
{
    return at > 0 && at < text.size() && text[at - 1].isHighSurrogate() &&
           text[at].isLowSurrogate();
}

// The length of the same beginning, up to the border of a word in both.
qsizetype commonStart(QStringView a, QStringView b)
{
    const qsizetype least = std::min(a.size(), b.size());
    const auto same = std::mismatch(a.begin(), a.begin() + least, b.begin()).first - a.begin();
    qsizetype length = same;
    while (same - length < maxWord && !(isBorder(a, length) && isBorder(b, length)))
        --length;
    while (splitsPair(a, length) || splitsPair(b, length))
        --length;
    return length;
}

qsizetype commonEnd(QStringView a, QStringView b)
{
    const qsizetype least = std::min(a.size(), b.size());
    qsizetype same = 0;
    while (same < least && a[a.size() - 1 - same] == b[b.size() - 1 - same])
        ++same;
    qsizetype length = same;
    const auto isWhole = [&] {
        return isBorder(a, a.size() - length) && isBorder(b, b.size() - length);
    };
    while (same - length < maxWord && !isWhole())
        --length;
    while (splitsPair(a, a.size() - length) || splitsPair(b, b.size() - length))
        --length;
    return length;
}

Words wordsOf(QStringView text)
{
    Words words;
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start + 1;
        while (end < text.size() && isInWord(text[start]) && isInWord(text[end]) &&
               (end - start < maxWord || splitsPair(text, end)))
            ++end;
        words.push_back(text.sliced(start, end - start));
        start = end;
    }
    return words;
}

// By pair of words, how many of those from there on can be kept: the longest common subsequence.
class KeptWords
{
public:
    KeptWords(const Words &before, const Words &after)
        : columns_(after.size() + 1)
        , kept_((before.size() + 1) * columns_)
    {
        for (std::size_t i = before.size(); i-- > 0;) {
            for (std::size_t j = after.size(); j-- > 0;)
                at(i, j) = before[i] == after[j] ? static_cast<quint16>(at(i + 1, j + 1) + 1)
                                                 : std::max(at(i + 1, j), at(i, j + 1));
        }
    }
    quint16 &at(std::size_t i, std::size_t j) { return kept_[i * columns_ + j]; }

private:
    std::size_t columns_;
    std::vector<quint16> kept_;
};
} // namespace

TextDifference::TextDifference(const QString &before, const QString &after)
    : before_(before)
    , after_(after)
{
    if (before == after)
        return;
    const qsizetype start = commonStart(before, after);
    QStringView older = QStringView(before_).sliced(start);
    QStringView newer = QStringView(after_).sliced(start);
    const qsizetype end = commonEnd(older, newer);
    older.chop(end);
    newer.chop(end);
    compareWords(start, older, newer);
}

void TextDifference::compareWords(qsizetype start, QStringView before, QStringView after)
{
    const auto note = [](Ranges &ranges, qsizetype at, qsizetype length) {
        if (length == 0)
            return;
        if (!ranges.empty() && ranges.back().start + ranges.back().length == at)
            ranges.back().length += length;
        else
            ranges.push_back({at, length});
    };
    Words older;
    Words newer;
    if (before.size() <= maxText && after.size() <= maxText) {
        older = wordsOf(before);
        newer = wordsOf(after);
    }
    if (older.empty() || newer.empty() || older.size() > maxWords || newer.size() > maxWords) {
        note(inBefore_, start, before.size());
        note(inAfter_, start, after.size());
        return;
    }
    KeptWords kept(older, newer);
    qsizetype inOlder = start;
    qsizetype inNewer = start;
    for (std::size_t i = 0, j = 0; i < older.size() || j < newer.size();) {
        const bool isSame = i < older.size() && j < newer.size() && older[i] == newer[j];
        const bool isGone = !isSame && i < older.size() &&
                            (j == newer.size() || kept.at(i + 1, j) >= kept.at(i, j + 1));
        if (isGone)
            note(inBefore_, inOlder, older[i].size());
        else if (!isSame)
            note(inAfter_, inNewer, newer[j].size());
        if (isSame || isGone)
            inOlder += older[i++].size();
        if (!isGone)
            inNewer += newer[j++].size();
    }
}

TextDifference::Parts TextDifference::excerpt(Side side, qsizetype maxLength) const
{
    using enum Part::Kind;
    const QString &text = textOf(side);
    const bool isWhole = text.size() <= maxLength;
    Parts parts;
    qsizetype done = 0;
    qsizetype room = maxLength;
    const auto add = [&](Part::Kind kind, qsizetype end) {
        qsizetype length = std::min(end - done, room);
        if (length > 0 && splitsPair(text, done + length))
            --length;
        if (length > 0)
            parts.push_back({kind, text.sliced(done, length)});
        done += std::max<qsizetype>(length, 0);
        room -= length;
    };
    const auto skipTo = [&](qsizetype start) {
        if (start > done)
            parts.push_back({LeftOut, QStringLiteral("…")});
        done = start;
    };
    for (const Range &range : rangesOf(side)) {
        if (!isWhole && range.start - done > 2 * context) {
            if (done > 0)
                add(Same, done + context);
            skipTo(range.start - context - (splitsPair(text, range.start - context) ? 1 : 0));
        }
        add(Same, range.start);
        add(Changed, range.start + range.length);
        if (room < 2) // which may not be enough for a pair
            break;
    }
    add(Same, isWhole ? text.size() : std::min(text.size(), done + context));
    skipTo(text.size());
    return parts;
}
