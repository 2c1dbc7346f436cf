// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <vector>

// The parts in which two texts differ, for marking them: whole words where the texts are short,
// else what is between the same beginning and the same end. Linear.
class TextDifference
{
public:
    struct Part
    {
        enum class Kind : quint8 { Same, Changed, LeftOut };

        Kind kind;
        QString text; // an ellipsis for what is left out
    };
    using Parts = std::vector<Part>;
    enum class Side : quint8 { Before, After };

    TextDifference(const QString &before, const QString &after);

    Parts parts(Side side) const { return excerpt(side, textOf(side).size()); }
    // Of a text that is longer than this, what changed with a little around it, and no more than
    // this of it.
    Parts excerpt(Side side, qsizetype maxLength) const;

private:
    struct Range
    {
        qsizetype start;
        qsizetype length;
    };
    using Ranges = std::vector<Range>;

    const QString &textOf(Side side) const { return side == Side::Before ? before_ : after_; }
    const Ranges &rangesOf(Side side) const { return side == Side::Before ? inBefore_ : inAfter_; }
    void compareWords(qsizetype start, QStringView before, QStringView after);

    QString before_;
    QString after_;
    Ranges inBefore_; // changed ones
    Ranges inAfter_;
};
