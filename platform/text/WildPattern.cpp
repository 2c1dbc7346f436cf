// SPDX-License-Identifier: Apache-2.0
#include "platform/text/WildPattern.h"

#include <algorithm>

namespace {
bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

bool isWild(char character)
{
    return character == '*' || character == '#';
}

bool matchesWild(QByteArrayView pattern, QByteArrayView text)
{
    if (pattern.isEmpty())
        return text.isEmpty();
    if (isWild(pattern.front())) {
        const bool isAnyText = pattern.front() == '*';
        const QByteArrayView rest = pattern.sliced(1);
        if (isAnyText && rest.isEmpty())
            return true;
        // Cheap: rules out most lengths.
        const auto mayGoOn = [&](qsizetype at) {
            return rest.isEmpty() || isWild(rest.front()) ||
                   (at < text.size() && text[at] == rest.front());
        };
        for (qsizetype length = isAnyText ? 0 : 1; length <= text.size(); ++length) {
            if (!isAnyText && !isDigit(text[length - 1]))
                return false;
            if (mayGoOn(length) && matchesWild(rest, text.sliced(length)))
                return true;
        }
        return false;
    }
    return !text.isEmpty() && pattern.front() == text.front() &&
           matchesWild(pattern.sliced(1), text.sliced(1));
}
} // namespace

WildPattern::WildPattern(QByteArray text)
    : text_(std::move(text))
    , isPlain_(std::none_of(text_.begin(), text_.end(), isWild))
{}

bool WildPattern::matches(QByteArrayView text) const
{
    return isPlain_ ? text == text_ : matchesWild(text_, text);
}
