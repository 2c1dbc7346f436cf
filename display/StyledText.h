// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <vector>

// How to paint a part of a rendered value. The painter resolves fonts and colours from the user's
// settings.
struct TextAttributes
{
    enum class Wrap : quint8 { Word, Character };

    bool fixedPitch = false; // the user's fixed-pitch font at the small system size
    bool grayForeground = false;
    bool marked = false; // differs from another text
    bool link = false;   // in the colour of links, underlined
    Wrap wrap = Wrap::Word;
    char headIndent = 0; // wrapped lines are indented by the width of this character; 0: none

    friend bool operator==(const TextAttributes &, const TextAttributes &) = default;
};

// A text with its attributes: those of the whole text, and ranges with others.
class StyledText
{
public:
    struct Range
    {
        quint32 start; // in UTF-16 units, like length
        quint32 length;
        TextAttributes attributes;

        friend bool operator==(const Range &, const Range &) = default;
    };
    using Ranges = std::vector<Range>; // in order, without overlap

    StyledText() = default;
    StyledText(const QString &text, const TextAttributes &attributes, Ranges overrides = {})
        : text_(text)
        , overrides_(std::move(overrides))
        , attributes_(attributes)
    {}

    bool isNull() const { return text_.isNull(); }
    const QString &text() const { return text_; }
    const TextAttributes &attributes() const { return attributes_; }
    const Ranges &overrides() const { return overrides_; }

    friend bool operator==(const StyledText &, const StyledText &) = default;

private:
    QString text_;
    Ranges overrides_;
    TextAttributes attributes_;
};
