// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributeText.h"

namespace AttributeText {
namespace {
bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}
} // namespace

View trimmed(View text)
{
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text.chop(1);
    return text;
}

Views split(View text, char separator)
{
    Views parts;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            parts.append(text.sliced(start, i - start));
            start = i + 1;
        }
    }
    return parts;
}

Views words(View text)
{
    Views parts;
    qsizetype start = -1;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        const bool blank = i == text.size() || isBlank(text[i]);
        if (!blank && start < 0) {
            start = i;
        } else if (blank && start >= 0) {
            parts.append(text.sliced(start, i - start));
            start = -1;
        }
    }
    return parts;
}
} // namespace AttributeText
