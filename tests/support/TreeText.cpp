// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TreeText.h"

#include <QByteArray>
#include <QList>
#include <algorithm>

std::string dedented(const char *text)
{
    QList<QByteArray> lines = QByteArray(text).split('\n');
    lines.removeIf([](const QByteArray &line) { return line.trimmed().isEmpty(); });
    const auto indentation = [](const QByteArray &line) {
        return std::find_if(line.begin(), line.end(), [](char c) { return c != ' '; }) -
               line.begin();
    };
    qsizetype shared = lines.isEmpty() ? 0 : indentation(lines.constFirst());
    for (const QByteArray &line : lines)
        shared = std::min<qsizetype>(shared, indentation(line));
    std::string tree;
    for (const QByteArray &line : lines)
        tree += line.mid(shared).toStdString() + '\n';
    return tree;
}

std::string firstDifference(const std::string &text, const std::string &expected)
{
    const auto ends = std::mismatch(text.begin(), text.end(), expected.begin(), expected.end());
    const std::size_t same = static_cast<std::size_t>(ends.first - text.begin());
    const std::size_t line = text.substr(0, same).rfind('\n') + 1;
    constexpr std::size_t most = 2000;
    return text.substr(line, most) + "\ninstead of\n" + expected.substr(line, most) + '\n';
}
