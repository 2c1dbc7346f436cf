// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/PropertyText.h"

#include <QByteArrayMatcher>
#include <QHash>
#include <QStringMatcher>
#include <array>

// Searches texts for one text, case-insensitive. An empty text is never found.
class TextSearch
{
public:
    explicit TextSearch(const QString &text)
        : matcher_(text, Qt::CaseInsensitive)
        , foldedMatcher_(PropertyText::folded(text))
        , length_(text.size())
    {}

    qsizetype length() const { return length_; }
    bool matches(QStringView candidate) const
    {
        return length_ > 0 && candidate.size() >= length_ && matcher_.indexIn(candidate) >= 0;
    }
    // Whether any text of a PropertyText, or of a part of it, matches.
    bool matchesAnyOf(QByteArrayView texts) const
    {
        return length_ > 0 && foldedMatcher_.indexIn(texts) >= 0;
    }
    // Like matches, for a text that keeps its address during the search. Caches answers, since many
    // entries share texts; answers for long texts stay cached.
    bool matchesKept(QStringView candidate) const
    {
        const auto place = reinterpret_cast<quintptr>(candidate.utf16());
        Known &known = known_[(place >> 4 ^ place >> 13) % known_.size()];
        if (known.text != candidate.utf16() || known.size != candidate.size()) {
            const bool answer =
                candidate.size() < longSize ? matches(candidate) : matchesLong(candidate);
            known = {candidate.utf16(), candidate.size(), answer};
        }
        return known.matches;
    }

private:
    static constexpr qsizetype longSize = 1024;

    bool matchesLong(QStringView candidate) const
    {
        const auto known = knownLong_.constFind(candidate.utf16());
        return known != knownLong_.constEnd()
                   ? *known
                   : *knownLong_.insert(candidate.utf16(), matches(candidate));
    }

    struct Known
    {
        const char16_t *text = nullptr;
        qsizetype size = 0;
        bool matches = false;
    };

    QStringMatcher matcher_;
    QByteArrayMatcher foldedMatcher_;
    qsizetype length_;
    mutable std::array<Known, 512> known_{};
    mutable QHash<const char16_t *, bool> knownLong_;
};
