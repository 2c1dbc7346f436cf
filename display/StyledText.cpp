#include "display/StyledText.h"

StyledText::StyledText(const QString &text, const TextAttributes &attributes)
    : text_(text)
{
    if (!text.isEmpty())
        ranges_.push_back({0, text.size(), attributes});
}

void StyledText::append(QStringView text, const TextAttributes &attributes)
{
    if (text.isEmpty())
        return;
    if (!ranges_.empty() && ranges_.back().attributes == attributes)
        ranges_.back().length += text.size();
    else
        ranges_.push_back({text_.size(), text.size(), attributes});
    text_.append(text);
}

void StyledText::reserve(qsizetype characters, std::size_t ranges)
{
    text_.reserve(characters);
    ranges_.reserve(ranges);
}
