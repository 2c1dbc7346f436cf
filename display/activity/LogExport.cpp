// SPDX-License-Identifier: Apache-2.0
#include "display/activity/LogExport.h"

#include "display/activity/EventWords.h"
#include "display/export/CsvCell.h"
#include "display/export/EscapedText.h"
#include "display/export/JsonWriter.h"

#include <QDateTime>
#include <QTimeZone>

namespace {
QDateTime timeOf(const LogRow &row)
{
    return QDateTime::fromMSecsSinceEpoch(row.event.time, Qt::UTC);
}

QString numberText(quint64 number) // none: empty
{
    return number == 0 ? QString() : QString::number(number);
}

QStringList cells(const LogRow &row)
{
    return {timeOf(row).toString(Qt::ISODateWithMs),
            EventWords::name(row.event.kind),
            row.name,
            row.path,
            row.event.kernelPath,
            row.className(),
            row.driver,
            EventWords::changes(row),
            numberText(row.event.sequence),
            numberText(row.entryTag)};
}

const QStringList &head()
{
    static const QStringList titles{QStringLiteral("time"),       QStringLiteral("event"),
                                    QStringLiteral("name"),       QStringLiteral("path"),
                                    QStringLiteral("kernelPath"), QStringLiteral("class"),
                                    QStringLiteral("driver"),     QStringLiteral("changes"),
                                    QStringLiteral("sequence"),   QStringLiteral("id")};
    return titles;
}

void addJson(const LogRow &row, JsonWriter &json)
{
    json.beginObject();
    json.member(QLatin1String("time"), timeOf(row));
    json.member(QLatin1String("event"), QString(EventWords::name(row.event.kind)));
    json.member(QLatin1String("id"), row.entryTag == 0 ? QString() : numberText(row.entryTag));
    const auto member = [&](const char *key, const QString &text) {
        json.member(QLatin1String(key), text.isEmpty() ? QString() : text);
    };
    member("path", row.path);
    member("kernelPath", row.event.kernelPath);
    member("oldKernelPath", row.event.oldKernelPath);
    member("name", row.name);
    member("class", row.className());
    member("driver", row.driver);
    if (row.event.sequence != 0)
        json.numberMember(QLatin1String("sequence"), row.event.sequence);
    if (row.event.lost != 0)
        json.numberMember(QLatin1String("lost"), row.event.lost);
    if (!row.changes.empty()) {
        json.key(QLatin1String("changes"));
        json.beginArray();
        for (const LogChange &change : row.changes) {
            json.beginObject();
            json.member(QLatin1String("property"), change.key);
            json.member(QLatin1String("old"), change.before);
            json.member(QLatin1String("new"), change.after);
            json.endObject();
        }
        json.endArray();
    }
    json.endObject();
    json.endDocument();
}
} // namespace

QString LogExport::text(const LogRow &row)
{
    constexpr qsizetype wordWidth = 14;
    QString line = EventWords::time(row.event) + QStringLiteral("  ") +
                   EventWords::word(row.event.kind).leftJustified(wordWidth) +
                   escapedText(EventWords::path(row));
    for (const QString &part : {EventWords::detail(row), row.driver}) {
        if (!part.isEmpty())
            line += QStringLiteral("  ") + escapedText(part);
    }
    for (const LogChange &change : row.changes)
        line += QStringLiteral("\n    ") + escapedText(EventWords::change(change));
    return line;
}

bool LogExport::write(const EventLog &log, std::span<const quint64> numbers, Format format,
                      QIODevice &device)
{
    if (format == Format::Ndjson) {
        JsonWriter json(device);
        for (const quint64 number : numbers) {
            if (number >= log.firstNumber())
                addJson(log.row(number), json);
        }
        return json.finish();
    }
    Utf8Output output(device);
    if (format == Format::Csv)
        addCsvLine(head(), output);
    for (const quint64 number : numbers) {
        if (number < log.firstNumber())
            continue;
        const LogRow &row = log.row(number);
        if (format == Format::Csv) {
            addCsvLine(cells(row), output);
        } else {
            output.add(text(row));
            output.add('\n');
        }
    }
    return output.finish();
}
