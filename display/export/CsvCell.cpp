// SPDX-License-Identifier: Apache-2.0
#include "display/export/CsvCell.h"

#include "display/export/EscapedText.h"

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
