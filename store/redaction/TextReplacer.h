// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QBitArray>
#include <QHash>
#include <QString>
#include <functional>
#include <vector>

// Replaces any of many texts in another, ignoring case, in a time that hardly depends on how many
// there are. Of several at one place the longest counts.
class TextReplacer
{
public:
    static constexpr qsizetype minLength = 4; // shorter ones are not replaced

    TextReplacer();

    // wholeWord: only where neither a letter nor a digit is beside it. The first replacement of a
    // text counts.
    void add(const QString &text, const QString &replacement, bool wholeWord);

    QString apply(const QString &text) const; // the same if there is nothing to replace
    using Match =
        std::function<void(qsizetype start, qsizetype length, const QString &replacement)>;
    void forEachMatch(QStringView text, const Match &match) const; // in order

    static QString folded(QStringView text); // of the same length

private:
    struct Replacement
    {
        QString text;
        bool wholeWord;
    };

    static quint64 startOf(QStringView folded);
    static qsizetype bitOf(quint64 start);
    const Replacement *find(const QString &folded, qsizetype at, qsizetype &length) const;

    QHash<QString, Replacement> replacements_;
    QHash<quint64, std::vector<qsizetype>> lengths_; // by first characters, longest first
    QBitArray starts_;                               // which may begin one
};
