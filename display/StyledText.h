#pragma once

#include <QString>
#include <vector>

// How a stretch of a rendered value is to be painted. Fonts and colours are the painter's: it
// resolves these from the user's settings.
struct TextAttributes
{
    enum class Wrap : quint8 { Word, Character };

    bool fixedPitch = false; // the user's fixed-pitch font at the small system size
    bool grayForeground = false;
    Wrap wrap = Wrap::Word;
    char16_t headIndent = 0; // wrapped lines are indented by the width of this character, if any

    friend bool operator==(const TextAttributes &, const TextAttributes &) = default;
};

// A text and the formats of its ranges. Ranges are in order and do not overlap; together they
// cover the text. A text that is null has no ranges.
class StyledText
{
public:
    struct Range
    {
        qsizetype start; // in UTF-16 units, as length
        qsizetype length;
        TextAttributes attributes;

        friend bool operator==(const Range &, const Range &) = default;
    };

    StyledText() = default;
    StyledText(const QString &text, const TextAttributes &attributes);

    bool isNull() const { return text_.isNull(); }
    const QString &text() const { return text_; }
    const std::vector<Range> &ranges() const { return ranges_; }

    // Adjacent pieces of the same attributes make one range.
    void append(QStringView text, const TextAttributes &attributes);
    void reserve(qsizetype characters, std::size_t ranges);

    friend bool operator==(const StyledText &, const StyledText &) = default;

private:
    QString text_;
    std::vector<Range> ranges_;
};
