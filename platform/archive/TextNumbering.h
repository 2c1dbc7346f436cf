// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <vector>

// Gives equal strings of an archive equal numbers, and others different ones. Each text is hashed
// once, because a small hostile file can refer to a long text many times.
class TextNumbering
{
public:
    // The index is the text's position among the strings; the text must stay there.
    quint64 number(quint64 index, QStringView text);

private:
    std::vector<quint64> numbers_; // by index; 0: none yet
    QHash<QStringView, quint64> byText_;
};
