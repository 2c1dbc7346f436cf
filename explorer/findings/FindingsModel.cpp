// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/FindingsModel.h"

#include "activity/EntryPlace.h"
#include "checks/CheckList.h"
#include "display/views/EntryColors.h"
#include "explorer/findings/DocumentFindings.h"
#include "platform/widgets/ReadableColor.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QGuiApplication>

FindingsModel::FindingsModel(const DocumentFindings &findings, std::shared_ptr<TavDataStore> store)
    : findings_(findings)
    , store_(std::move(store))
{
    connect(&findings, &DocumentFindings::changed, this, &FindingsModel::reload);
    reload();
}

void FindingsModel::reload()
{
    beginResetModel();
    rows_.clear();
    for (const Finding &finding : findings_.findings()) {
        TavRegistryEntry *const entry = store_->entryWithTag(finding.entryTag);
        const EntryPlace place = entry ? EntryPlace::of(*entry) : EntryPlace();
        rows_.push_back({finding, CheckList::withID(finding.check)->description().title, place.name,
                         place.path});
    }
    endResetModel();
}

QString FindingsModel::word(Severity severity)
{
    return severity == Severity::Error     ? tr("error")
           : severity == Severity::Warning ? tr("warning")
                                           : tr("note");
}

QVariant FindingsModel::color(Severity severity)
{
    const auto readable = [](const QColor &color) {
        return readableColor(color, QGuiApplication::palette());
    };
    return severity == Severity::Error     ? readable(EntryColors::colorForTerminatedItem())
           : severity == Severity::Warning ? readable(EntryColors::colorForChangedItem())
                                           : QVariant();
}

QString FindingsModel::plainText(int row) const
{
    const Row &its = rows_[static_cast<std::size_t>(row)];
    const CheckDescription check = CheckList::withID(its.finding.check)->description();
    QStringList lines{QStringLiteral("%1: %2").arg(word(its.finding.severity), its.title)};
    for (const QString &line : {its.path, its.finding.detail, check.explanation, check.nextStep}) {
        if (!line.isEmpty())
            lines.append(line);
    }
    return lines.join(u'\n');
}

int FindingsModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FindingsModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant FindingsModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const Row &row = rows_[static_cast<std::size_t>(index.row())];
    if (role == Qt::ForegroundRole && index.column() == SeverityColumn)
        return color(row.finding.severity);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case SeverityColumn:
        return word(row.finding.severity);
    case TitleColumn:
        return row.title;
    case ObjectColumn:
        return visibleText(row.object);
    case DetailColumn:
        return visibleText(row.finding.detail);
    case PathColumn:
        return visibleText(row.path);
    default:
        return {};
    }
}

QVariant FindingsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const QStringList titles{tr("Severity"), tr("Finding"), tr("Object"), tr("Detail"), tr("Path")};
    return titles.value(section);
}
