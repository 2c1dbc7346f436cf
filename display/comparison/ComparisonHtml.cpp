// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparisonHtml.h"

#include "display/comparison/ComparisonSummary.h"
#include "display/comparison/DifferenceWords.h"
#include "display/export/EscapedText.h"

#include <QFile>

namespace {
using L1 = QLatin1String;
using Side = TextDifference::Side;

constexpr quint64 maxOpen = 200; // entries with their details; of more, the reader opens them
constexpr qsizetype maxPageValue = 1000; // characters; of a longer one, what differs

QByteArray style()
{
    QFile file(QStringLiteral(":/comparison/page.css"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Line breaks stay: the page shows them.
QString harmless(const QString &text)
{
    if (!text.contains(u'\n'))
        return escapedText(text).toHtmlEscaped();
    QStringList lines;
    for (const QString &line : text.split(u'\n'))
        lines.append(escapedText(line).toHtmlEscaped());
    return lines.join(u'\n');
}
} // namespace

ComparisonHtml::ComparisonHtml(const ExportedDifferences &differences, QIODevice &device)
    : differences_(differences)
    , areOpen_(differences.counts().differences() <= maxOpen)
    , output_(device)
{}

bool ComparisonHtml::write(const ExportedDifferences &differences, QIODevice &device,
                           const Reach &reach)
{
    ComparisonHtml page(differences, device);
    page.addHead();
    page.addRegistries();
    page.addCounts();
    differences.forEach(reach,
                        [&](const EntryDifference &difference) { page.addEntry(difference); });
    page.output_.add(L1("</main>\n</body>\n</html>\n"));
    return page.output_.finish();
}

void ComparisonHtml::addText(const QString &text)
{
    output_.add(harmless(text));
}

void ComparisonHtml::addElement(L1 tag, const QString &text)
{
    output_.add('<');
    output_.add(tag);
    output_.add('>');
    addText(text);
    output_.add(L1("</"));
    output_.add(tag);
    output_.add('>');
}

// The policy keeps a browser from loading anything, whatever the texts hold.
void ComparisonHtml::addHead()
{
    output_.add(L1("<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\"/>\n"
                   "<meta http-equiv=\"Content-Security-Policy\" "
                   "content=\"default-src 'none'; style-src 'unsafe-inline'\"/>\n"
                   "<meta name=\"viewport\" content=\"width=device-width\"/>\n"));
    addElement(L1("title"),
               tr("%1 and %2: what differs")
                   .arg(differences_.before().source(), differences_.after().source()));
    output_.add(L1("\n<style>\n"));
    output_.add(QByteArrayView(style()));
    output_.add(L1("</style>\n</head>\n<body>\n<main>\n"));
    addElement(L1("h1"), tr("What differs"));
    output_.add('\n');
}

void ComparisonHtml::addRegistries()
{
    output_.add(L1("<table class=\"sides\">\n<thead><tr><th></th>"));
    addElement(L1("th"), tr("Before"));
    addElement(L1("th"), tr("After"));
    output_.add(L1("</tr></thead>\n<tbody>\n"));
    for (const auto fact : ComparedRegistry::facts()) {
        const QString before = differences_.before().text(fact);
        const QString after = differences_.after().text(fact);
        if (before.isEmpty() && after.isEmpty())
            continue;
        const bool isNoted = before != after && fact != ComparedRegistry::Fact::Source &&
                             fact != ComparedRegistry::Fact::Read;
        output_.add(isNoted ? L1("<tr class=\"differs\">") : L1("<tr>"));
        addElement(L1("th"), ComparedRegistry::title(fact));
        addElement(L1("td"), before);
        addElement(L1("td"), after);
        output_.add(L1("</tr>\n"));
    }
    output_.add(L1("</tbody>\n</table>\n"));
    for (const QString &note :
         ComparedRegistry::notes(differences_.before(), differences_.after())) {
        addElement(L1("p"), note);
        output_.add('\n');
    }
}

void ComparisonHtml::addCounts()
{
    const auto &counts = differences_.counts();
    if (counts.differences() == 0) {
        addElement(L1("p"), ComparisonSummary::text(counts));
        output_.add('\n');
        return;
    }
    output_.add(L1("<ul class=\"counts\">\n"));
    for (const DifferenceKind kind : DifferenceWords::kinds()) {
        const quint64 count = ComparisonSummary::count(counts, kind);
        if (count == 0)
            continue;
        output_.add(L1("<li class=\""));
        output_.add(DifferenceWords::identifier(kind));
        output_.add(L1("\"><span class=\"sign\">"));
        addText(DifferenceWords::sign(kind));
        output_.add(L1("</span>"));
        addText(ComparisonSummary::part(kind, count));
        output_.add(L1("</li>\n"));
    }
    output_.add(L1("</ul>\n"));
}

void ComparisonHtml::addEntry(const EntryDifference &difference)
{
    const DifferenceRows rows(differences_, difference);
    const bool hasRows = !rows.rows().empty();
    output_.add(hasRows ? L1("<details class=\"difference ") : L1("<div class=\"difference "));
    output_.add(DifferenceWords::identifier(difference.kind));
    output_.add(hasRows && areOpen_ ? L1("\" open=\"open\">") : L1("\">"));
    output_.add(hasRows ? L1("<summary class=\"head\">") : L1("<div class=\"head\">"));
    addEntryHead(difference);
    output_.add(hasRows ? L1("</summary>\n") : L1("</div>"));
    if (hasRows)
        addRows(rows);
    output_.add(hasRows ? L1("</details>\n") : L1("</div>\n"));
}

void ComparisonHtml::addEntryHead(const EntryDifference &difference)
{
    const TavRegistryEntry &entry = difference.entry();
    output_.add(L1("<span class=\"sign\">"));
    addText(DifferenceWords::sign(difference.kind));
    output_.add(L1("</span>"));
    addText(DifferenceWords::word(difference.kind) + u' ');
    addElement(L1("code"), DifferenceRows::pathOf(entry));
    output_.add(L1(" <span class=\"class\">"));
    addText(DifferenceRows::classAndDriver(entry));
    output_.add(L1("</span>"));
}

void ComparisonHtml::addRows(const DifferenceRows &rows)
{
    output_.add(L1("<table>\n<thead><tr>"));
    addElement(L1("th"), tr("Property"));
    addElement(L1("th"), tr("Before"));
    addElement(L1("th"), tr("After"));
    output_.add(L1("</tr></thead>\n<tbody>\n"));
    for (const auto &row : rows.rows())
        addRow(row);
    output_.add(L1("</tbody>\n</table>\n"));
}

void ComparisonHtml::addRow(const DifferenceRows::Row &row)
{
    const TextDifference difference(row.before.value_or(QString()), row.after.value_or(QString()));
    output_.add(L1("<tr><th scope=\"row\" style=\"padding-left:"));
    output_.addNumber(quint64(1) + std::min(row.level, DifferenceRows::maxLevel));
    output_.add(L1("em\">"));
    addText(row.title);
    output_.add(L1("</th>"));
    addCell(row.before, difference, Side::Before);
    addCell(row.after, difference, Side::After);
    output_.add(L1("</tr>\n"));
}

void ComparisonHtml::addCell(const std::optional<QString> &text, const TextDifference &difference,
                             Side side)
{
    output_.add(L1("<td>"));
    const L1 mark = side == Side::Before ? L1("del") : L1("ins");
    for (const auto &part : text ? differences_.isWhole() ? difference.parts(side)
                                                          : difference.excerpt(side, maxPageValue)
                                 : TextDifference::Parts()) {
        if (part.kind == TextDifference::Part::Kind::Changed)
            addElement(mark, part.text);
        else if (part.kind == TextDifference::Part::Kind::LeftOut)
            output_.add(QString(QStringLiteral("<span class=\"left-out\">…</span>")));
        else
            addText(part.text);
    }
    output_.add(L1("</td>"));
}
