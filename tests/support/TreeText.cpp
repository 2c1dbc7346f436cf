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
