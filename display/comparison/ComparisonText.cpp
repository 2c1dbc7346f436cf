// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparisonText.h"

#include "display/comparison/ComparisonSummary.h"
#include "display/comparison/DifferenceWords.h"
#include "display/export/EscapedText.h"
#include "display/export/Utf8Output.h"

namespace {
using Role = ComparisonText::Role;
using Side = TextDifference::Side;

constexpr qsizetype maxTextValue = 200; // characters; of a longer one, what differs
constexpr qsizetype indentation = 2;

Role roleOf(DifferenceKind kind)
{
    switch (kind) {
    case DifferenceKind::Added:
        return Role::Added;
    case DifferenceKind::Removed:
        return Role::Removed;
    default:
        return Role::Changed;
    }
}
} // namespace

bool ComparisonText::write(const ExportedDifferences &differences, QIODevice &device,
                           const Reach &reach)
{
    Utf8Output output(device);
    forEachLine(differences, reach, [&](const Line &line) {
        for (const Part &part : line)
            output.add(escapedText(part.text));
        output.add('\n');
    });
    return output.finish();
}

void ComparisonText::forEachLine(const ExportedDifferences &differences, const Reach &reach,
                                 const LineAction &action)
{
    ComparisonText text(differences, action);
    if (differences.detail() != ExportedDifferences::Detail::Counts) {
        text.addHead();
        differences.forEach(reach,
                            [&](const EntryDifference &difference) { text.addEntry(difference); });
        if (differences.counts().differences() > 0)
            action({});
    }
    action({{ComparisonSummary::text(differences.counts()), Role::Plain}});
}

void ComparisonText::addHead()
{
    const ComparedRegistry &before = differences_.before();
    const ComparedRegistry &after = differences_.after();
    action_({{QStringLiteral("--- ") + before.line(), Role::Removed}});
    action_({{QStringLiteral("+++ ") + after.line(), Role::Added}});
    for (const QString &note : ComparedRegistry::notes(before, after))
        action_({{QStringLiteral("!!! ") + note, Role::Changed}});
    action_({});
}

void ComparisonText::addEntry(const EntryDifference &difference)
{
    const TavRegistryEntry &entry = difference.entry();
    action_({{DifferenceWords::sign(difference.kind) + (u' ' + DifferenceRows::pathOf(entry)),
              roleOf(difference.kind)},
             {QStringLiteral("  ") + DifferenceRows::classAndDriver(entry), Role::Detail}});
    const DifferenceRows rows(differences_, difference);
    for (const auto &row : rows.rows())
        addRow(row);
}

void ComparisonText::addRow(const DifferenceRows::Row &row)
{
    const TextDifference difference(row.before.value_or(QString()), row.after.value_or(QString()));
    if (row.before)
        addSide(Side::Before, row, valueText(difference, Side::Before));
    if (row.after)
        addSide(Side::After, row, valueText(difference, Side::After));
}

void ComparisonText::addSide(Side side, const DifferenceRows::Row &row, const QString &text)
{
    const bool isBefore = side == Side::Before;
    const QString indent(indentation * std::min(row.level, DifferenceRows::maxLevel), u' ');
    const QString line = row.isCollection ? tr("%1 (%2)").arg(row.title, text)
                                          : row.title + QStringLiteral(" = ") + text;
    action_({{(isBefore ? QStringLiteral("  - ") : QStringLiteral("  + ")) + indent + line,
              isBefore ? Role::Removed : Role::Added}});
}

QString ComparisonText::valueText(const TextDifference &difference, Side side) const
{
    QString text;
    for (const auto &part :
         differences_.isWhole() ? difference.parts(side) : difference.excerpt(side, maxTextValue))
        text += part.text;
    return text;
}
