// SPDX-License-Identifier: Apache-2.0
#include "explorer/DateText.h"

#include <QLocale>
#include <QRegularExpression>

QString DateText::shortDate(const QDateTime &date)
{
    return QLocale().toString(date.toLocalTime().date(), QLocale::ShortFormat);
}

QString DateText::mediumTime(const QDateTime &date)
{
    // The long format differs only by the time zone.
    static const QRegularExpression zone(QStringLiteral("\\s*[(\\[]?t+[)\\]]?\\s*"));
    const QLocale locale;
    const QString format = locale.timeFormat(QLocale::LongFormat).replace(zone, QString());
    return locale.toString(date.toLocalTime().time(), format);
}
