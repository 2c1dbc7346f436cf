// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/StyledText.h"
#include "display/views/ExpandedItems.h"
#include "display/views/PropertiesViewController.h"
#include "platform/widgets/ExpansionRecorder.h"

#include <QAbstractItemModel>

class TavPropertyOutlineItem;

// The read-only rows of a property tree: key or index, type, value; the old value, too, if the tree
// is compared with an older one.
class TavPropertiesOutlineViewDataSource : public QAbstractItemModel
{
    Q_OBJECT
public:
    enum Column { KeyColumn, TypeColumn, ValueColumn, OldValueColumn };

    // The controller must outlive this.
    explicit TavPropertiesOutlineViewDataSource(PropertiesViewController &windowController,
                                                QObject *parent = nullptr);
    ~TavPropertiesOutlineViewDataSource() override;

    // Shows the controller's current tree. For the same entry, nodes at the same place keep their
    // indexes, so that the view keeps its selection, expanded rows and editor. For another entry,
    // the rows that were expanded in its older tree are expanded again.
    void reload(const PropertyRef &older = {});
    bool isOfSameEntry() const;                               // as the one shown
    const PropertyRef &rootItem() const { return rootItem_; } // the one shown
    const PropertyRef &nextRootItem() const;                  // the controller's current one
    void selectionDidChange();

    // The attribute of the row, as "DxUnreadAttributes" names it; null: none.
    QString attribute(const QModelIndex &index) const;
    PropertiesViewController::Reading reading(const QModelIndex &index) const; // for its attribute
    bool isUnreadAttribute(
        const QModelIndex &index) const; // a row with the reason why an attribute is not read
    void readAttribute(const QModelIndex &index); // when reading is offered
    PropertiesViewController::Plotting plotting(const QModelIndex &index) const;
    void togglePlot(const QModelIndex &index);
    const PlotLine *sparkline(const QModelIndex &index) const; // null: none
    bool isLink(const QModelIndex &index) const; // whether the row leads to another entry
    void followLink(const QModelIndex &index, bool inNewWindow);

    TavRegistryProperty *item(const QModelIndex &index) const;  // null: the invisible root
    QModelIndex indexOf(const TavRegistryProperty &item) const; // invalid: not shown
    StyledText styledText(const QModelIndex &index) const;
    QString line(const QModelIndex &index) const; // "power/control = auto", "list[0] = 0x7"
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
    // By a column's order; for any other number in natural order, as the entry gives them.
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

private:
    struct Row;

    Row *rowOf(const QModelIndex &index) const;
    Row &madeRow(const QModelIndex &parent) const; // with its child rows created
    void makeRowsBelow(Row &row) const;
    void sortRowsBelow(Row &row) const;
    void resetRows(const PropertyRef &newRoot);
    void takeRowsOver(const PropertyRef &newRoot);
    void findSuccessors(Row &older, Row &newer) const;
    static TavPropertyOutlineItem *outlineItem(TavRegistryProperty *item);
    StyledText valueText(TavRegistryProperty &item, const QModelIndex &index) const;
    StyledText comparedText(TavRegistryProperty &item, int column) const;
    QString changeText(const TavRegistryProperty &item) const;
    bool isTinted(const TavRegistryProperty &item) const;
    static QColor tint();
    RegistryState stateOf(const QModelIndex &index) const;
    static bool mayEdit(const TavRegistryProperty &item, int column);

    PropertiesViewController &windowController_;
    ExpansionRecorder expansionRecorder_;
    ExpandedItems expandedItems_;
    PropertyRef rootItem_; // keeps the rows' nodes alive
    std::unique_ptr<Row> root_;
    int sortColumn_ = -1;
    Qt::SortOrder sortOrder_ = Qt::AscendingOrder;
};
