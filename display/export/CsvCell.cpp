// SPDX-License-Identifier: Apache-2.0
#include "display/export/CsvCell.h"

#include "display/export/EscapedText.h"
#include "display/export/Utf8Output.h"

namespace {
bool isNumber(const QString &text)
{
    bool isDecimal = false;
    text.toDouble(&isDecimal);
    return isDecimal;
}
} // namespace

QString csvCell(const QString &text)
{
    QString cell = escapedText(text);
    const bool isFormula = !cell.isEmpty() && QStringView(u"=+-@").contains(cell.front());
    if (isFormula && !isNumber(cell))
        cell.prepend(u'\'');
    if (cell.contains(u',') || cell.contains(u'"') || cell.startsWith(u' ') || cell.endsWith(u' '))
        cell = u'"' + cell.replace(u'"', QLatin1String("\"\"")) + u'"';
    return cell;
}

void addCsvLine(const QStringList &texts, Utf8Output &output)
{
    QStringList cells;
    for (const QString &text : texts)
        cells.append(csvCell(text));
    output.add(cells.join(u','));
    output.add(QLatin1String("\r\n"));
}
