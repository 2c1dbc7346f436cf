// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryEntryPath.h"

#include <QAbstractTableModel>

class QLabel;
class QLineEdit;
class QTableView;
class ExplorerContext;
class FindSession;
class FoundEntryKey;

// The table of the entries that a search found: name and location, and the value of a chosen
// property. Sorted when a row is first needed.
class TavFindTableViewDataSource : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { NameColumn, PropertyColumn, ColumnCount };

    // All must outlive the use of this by the table.
    TavFindTableViewDataSource(const ExplorerContext &context, const FindSession &session,
                               QTableView &findTableView, QLineEdit &findPreviewField,
                               QLabel &findNumMatchedField);

    void reloadData(); // keeps the row of the selected entry selected and in its place
    void redisplay();  // after a change of the plane or of the entries' states

    int numberOfRowsInTableView();        // also updates the count field
    EntryRef entryAtIndex(int row) const; // null where there is none
    QVariant objectValueForTableColumn(int column, int row) const;
    void findPreviewChanged();
    void findPreviewSelected(); // chooses the entry of the selected row

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    // By a column; for any other number in the order of entries.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

Q_SIGNALS:
    void pathChosen(const TavRegistryEntryPath &path);

private:
    void setUpTable();
    void rowChosenAgain();
    QString countText() const;
    const std::vector<EntryRef> &sortedEntries() const;
    void sortByColumn() const;
    FoundEntryKey keyOf(const TavRegistryEntry &entry) const;
    // In the visible plane, or else in the first other one that has the entry.
    std::optional<TavRegistryEntryPath> pathOf(TavRegistryEntry &entry) const;
    int selectedRow() const;                // -1 for none
    int rowOf(const EntryRef &entry) const; // -1 for none
    int scrollStep() const;
    void restoreSelection(int row);
    int detailColumn() const;
    QString previewOf(const TavRegistryEntry &entry) const;
    QString toolTipOf(TavRegistryEntry &entry) const;
    QVariant styleOf(const TavRegistryEntry &entry, int role) const;

    const ExplorerContext &context_;
    const FindSession &session_;
    QTableView &findTableView_;
    QLineEdit &findPreviewField_;
    QLabel &findNumMatchedField_;
    int rows_ = 0;
    mutable std::vector<EntryRef> sorted_; // empty until a row is needed
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
    bool isReloading_ = false;
    quint64 eventOfVisit_; // the input event that last chose a row
};
