// SPDX-License-Identifier: Apache-2.0
#include "platform/text/NaturalOrder.h"

#include <algorithm>

namespace {
bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isHexDigit(QChar character)
{
    const char16_t lower = character.unicode() | 0x20;
    return isDigit(character) || (lower >= u'a' && lower <= u'f');
}

template<class Predicate>
QStringView run(QStringView text, Predicate belongs)
{
    return text.first(std::find_if_not(text.begin(), text.end(), belongs) - text.begin());
}

// The rest of a text that is compared token by token: numbers and single characters.
class Tokens
{
public:
    explicit Tokens(QStringView text)
        : rest_(text)
    {}

    bool atEnd() const { return rest_.isEmpty(); }

    // The number that comes next, without leading zeros ("" for zero): a whole word if that is
    // hexadecimal, such as the "1f" of an address, else the decimal digits. Null for no number.
    QStringView takeNumber()
    {
        if (!isDigit(rest_.front()))
            return {};
        QStringView number = run(rest_, isHexDigit);
        const bool isWord = isWordStart_ && (number.size() == rest_.size() ||
                                             !rest_[number.size()].isLetterOrNumber());
        if (!isWord)
            number = run(rest_, isDigit);
        rest_ = rest_.sliced(number.size());
        isWordStart_ = false;
        return number.sliced(run(number, [](QChar digit) { return digit == u'0'; }).size());
    }

    QChar takeCharacter()
    {
        const QChar character = rest_.front();
        isWordStart_ = !character.isLetterOrNumber();
        rest_ = rest_.sliced(1);
        return character.toCaseFolded();
    }

private:
    QStringView rest_;
    bool isWordStart_ = true;
};

int compareNumbers(QStringView a, QStringView b)
{
    return a.size() == b.size() ? a.compare(b, Qt::CaseInsensitive) : a.size() < b.size() ? -1 : 1;
}

int compareNextTokens(Tokens &a, Tokens &b)
{
    const QStringView number = a.takeNumber();
    const QStringView otherNumber = b.takeNumber();
    if (!number.isNull() && !otherNumber.isNull())
        return compareNumbers(number, otherNumber);
    const QChar first = number.isNull() ? a.takeCharacter() : QChar(u'0');
    const QChar second = otherNumber.isNull() ? b.takeCharacter() : QChar(u'0');
    return first < second ? -1 : second < first ? 1 : 0;
}
} // namespace

int compareNaturally(QStringView a, QStringView b)
{
    Tokens left(a);
    Tokens right(b);
    while (!left.atEnd() && !right.atEnd()) {
        if (const int order = compareNextTokens(left, right))
            return order;
    }
    return left.atEnd() ? (right.atEnd() ? 0 : -1) : 1;
}
