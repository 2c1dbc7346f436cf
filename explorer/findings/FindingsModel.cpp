// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/FindingsModel.h"

#include "activity/EntryPlace.h"
#include "checks/CheckList.h"
#include "display/views/FindingIcons.h"
#include "explorer/findings/DocumentFindings.h"
#include "platform/widgets/PlainToolTip.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QGuiApplication>
#include <QPalette>

FindingsModel::FindingsModel(const DocumentFindings &findings, std::shared_ptr<TavDataStore> store)
    : findings_(findings)
    , store_(std::move(store))
{
    connect(&findings, &DocumentFindings::changed, this, &FindingsModel::reload);
    connect(&findings, &DocumentFindings::checked, this, &FindingsModel::updatePlaces);
    reload();
}

std::vector<FindingsModel::Row> FindingsModel::currentRows() const
{
    std::vector<Row> rows;
    for (const Finding &finding : findings_.findings()) {
        const bool isHidden = findings_.isHidden(finding);
        if (!isHidden || showsHidden_)
            rows.push_back({finding, isHidden});
    }
    return rows;
}

// Looked up for what is visible: a machine may have thousands of findings.
EntryPlace FindingsModel::placeOf(const Row &row) const
{
    TavRegistryEntry *const entry = store_->entryWithTag(row.finding.entryTag);
    return entry ? EntryPlace::of(*entry) : EntryPlace();
}

void FindingsModel::reload()
{
    beginResetModel();
    rows_ = currentRows();
    endResetModel();
}

// The same findings: entries may have been renamed or moved.
void FindingsModel::updatePlaces()
{
    auto rows = currentRows();
    if (rows.size() != rows_.size()) // a renamed device may be hidden no more
        return reload();
    rows_ = std::move(rows);
    if (!rows_.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columns - 1));
}

void FindingsModel::setShowsHidden(bool shows)
{
    showsHidden_ = shows;
    reload();
}

int FindingsModel::rowOf(const Finding &finding) const
{
    const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row &row) {
        return row.finding.check == finding.check && row.finding.entryTag == finding.entryTag &&
               row.finding.properties == finding.properties;
    });
    return found == rows_.end() ? -1 : static_cast<int>(found - rows_.begin());
}

QString FindingsModel::word(Severity severity)
{
    return severity == Severity::Error     ? tr("error")
           : severity == Severity::Warning ? tr("warning")
                                           : tr("note");
}

QString FindingsModel::plainText(int row) const
{
    const Row &its = rows_[static_cast<std::size_t>(row)];
    const CheckDescription &check = CheckList::describe(its.finding.check);
    QStringList lines{QStringLiteral("%1: %2").arg(word(its.finding.severity), check.title)};
    for (const QString &line :
         {placeOf(its).path, its.finding.detail, check.explanation, its.finding.nextStep}) {
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
    if (role == Qt::ForegroundRole && row.isHidden)
        return QGuiApplication::palette().color(QPalette::PlaceholderText);
    if (role == Qt::DecorationRole && index.column() == SeverityColumn)
        return FindingIcons::icon(row.finding.severity, row.isHidden ? FindingIcons::Kind::Below
                                                                     : FindingIcons::Kind::Own);
    if (role == Qt::AccessibleTextRole && index.column() == SeverityColumn && row.isHidden)
        return tr("%1, hidden").arg(word(row.finding.severity));
    if (role == Qt::ToolTipRole)
        return plainToolTip(index.data().toString()); // columns are narrow
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case SeverityColumn:
        return word(row.finding.severity);
    case TitleColumn:
        return CheckList::describe(row.finding.check).title;
    case ObjectColumn:
        return visibleText(placeOf(row).name);
    case DetailColumn:
        return visibleText(row.finding.detail);
    case PathColumn:
        return visibleText(placeOf(row).path);
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
