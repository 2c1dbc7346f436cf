#pragma once

#include "model/TavRegistryEntryPath.h"

#include <QAbstractTableModel>

class QLabel;
class QLineEdit;
class QTableView;
class ExplorerContext;
class FindSession;

// The entries that a search has found, by name and location, with the value of a chosen property
// beside them.
// They are sorted when a row is first asked for.
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
    void redisplay();  // for the plane or what has become of the entries may be another

    int numberOfRowsInTableView();        // and says it in words
    EntryRef entryAtIndex(int row) const; // null where there is none
    QVariant objectValueForTableColumn(int column, int row) const;
    void findPreviewChanged();
    void findPreviewSelected(); // chooses the entry of the selected row

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;

Q_SIGNALS:
    void pathChosen(const TavRegistryEntryPath &path);

private:
    void setUpTable();
    void rowChosenAgain();
    QString countText() const;
    const std::vector<EntryRef> &sortedEntries() const;
    // In the plane that is shown, or else in the first other one that has the entry.
    std::optional<TavRegistryEntryPath> pathOf(TavRegistryEntry &entry) const;
    int selectedRow() const;                // -1 for none
    int rowOf(const EntryRef &entry) const; // -1 for none
    int scrollStep() const;
    void restoreSelection(int row);
    QString previewOf(const TavRegistryEntry &entry) const;
    QString toolTipOf(TavRegistryEntry &entry) const;
    QVariant styleOf(const TavRegistryEntry &entry, int role) const;

    const ExplorerContext &context_;
    const FindSession &session_;
    QTableView &findTableView_;
    QLineEdit &findPreviewField_;
    QLabel &findNumMatchedField_;
    int rows_ = 0;
    mutable std::vector<EntryRef> sorted_; // empty until a row is asked for
    bool isReloading_ = false;
    quint64 eventOfVisit_; // in which the entry of a row was last gone to
};
