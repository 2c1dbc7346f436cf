#pragma once

#include "display/StyledText.h"
#include "display/views/ExpandedItems.h"
#include "display/views/PropertiesViewController.h"
#include "platform/widgets/ExpansionRecorder.h"

#include <QAbstractItemModel>

class TavPropertyOutlineItem;

// The rows of a property tree: key or index, type, value. Nothing in them can be changed.
class TavPropertiesOutlineViewDataSource : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { KeyColumn, TypeColumn, ValueColumn, ColumnCount };

    // The controller must outlive this.
    explicit TavPropertiesOutlineViewDataSource(PropertiesViewController &windowController,
                                                QObject *parent = nullptr);
    ~TavPropertiesOutlineViewDataSource() override;

    // Shows the controller's present tree. One of the same entry takes the rows over: what stands
    // at the same place keeps its indexes, and the view with them its selection, its open rows and
    // its editor. Of another entry, what was open in the older tree is to be open again.
    void reload(const PropertyRef &older = {});
    bool isOfSameEntry() const;                               // as the one that is shown
    const PropertyRef &rootItem() const { return rootItem_; } // the one that is shown
    const PropertyRef &nextRootItem() const;                  // the controller's present one
    void selectionDidChange();

    // The attribute that a row is about, as "DxUnreadAttributes" names it; null for no row.
    QString attribute(const QModelIndex &index) const;
    PropertiesViewController::Reading reading(const QModelIndex &index) const; // of its attribute
    bool isUnreadAttribute(const QModelIndex &index) const; // a row that says why one is not read
    void readAttribute(const QModelIndex &index);           // when that is offered

    TavRegistryProperty *item(const QModelIndex &index) const;  // null for the invisible top
    QModelIndex indexOf(const TavRegistryProperty &item) const; // invalid for what is not shown
    StyledText styledText(const QModelIndex &index) const;
    static bool isItemExpandable(const TavRegistryProperty &item);
    bool isItemExpanded(const TavRegistryProperty &item) const;
    void itemDidExpand(const QModelIndex &index);
    void itemDidCollapse(const QModelIndex &index);
    void noteAllItemsExpanded(bool isExpanded);
    void removeTerminatedItems() { expandedItems_.removeTerminatedItems(); }

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    // By a column's order, or by nature: as the entry gives them, for any other number.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    struct Row;

    Row *rowOf(const QModelIndex &index) const;
    Row &madeRow(const QModelIndex &parent) const; // with the rows below it made
    void makeRowsBelow(Row &row) const;
    void sortRowsBelow(Row &row) const;
    void resetRows(const PropertyRef &newRoot);
    void takeRowsOver(const PropertyRef &newRoot);
    void findSuccessors(Row &older, Row &newer) const;
    static TavPropertyOutlineItem *outlineItem(TavRegistryProperty *item);
    static bool mayEdit(const TavRegistryProperty &item, int column);

    PropertiesViewController &windowController_;
    ExpansionRecorder expansionRecorder_;
    ExpandedItems expandedItems_;
    PropertyRef rootItem_; // keeps the nodes that the rows stand for
    std::unique_ptr<Row> root_;
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};
