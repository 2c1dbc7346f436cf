#pragma once

#include <QString>
#include <QStringMatcher>
#include <array>

// One text looked for in many, without regard to case: within them, or as the whole of them. An
// empty text is found nowhere.
class TextSearch
{
public:
    TextSearch(const QString &text, bool isSubstring);

    bool matches(QStringView candidate) const
    {
        if (candidate.size() < length_ || length_ == 0)
            return false;
        return isSubstring_ ? matcher_.indexIn(candidate) >= 0
                            : candidate.compare(text_, Qt::CaseInsensitive) == 0;
    }
    // The same for a text that stays where it is while the search lasts. Many properties share one
    // text, so most answers are known already.
    bool matchesKept(QStringView candidate) const
    {
        const auto place = reinterpret_cast<quintptr>(candidate.utf16());
        Known &known = known_[(place >> 4 ^ place >> 13) % known_.size()];
        if (known.text != candidate.utf16() || known.size != candidate.size())
            known = {candidate.utf16(), candidate.size(), matches(candidate)};
        return known.matches;
    }

private:
    struct Known
    {
        const char16_t *text = nullptr;
        qsizetype size = 0;
        bool matches = false;
    };

    QString text_;
    QStringMatcher matcher_;
    qsizetype length_;
    bool isSubstring_;
    mutable std::array<Known, 512> known_{};
};
