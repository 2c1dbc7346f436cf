// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/tree/OutlineRowObserver.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "platform/widgets/ExpansionRecorder.h"

#include <QAbstractItemModel>
#include <QHash>

class ExplorerContext;

// The rows of an entry tree: the nodes of the visible plane. Rows come and go in reload() only,
// even when entries change in between.
class TavRegistryOutlineViewDataSource : public QAbstractItemModel, private OutlineRowObserver
{
    Q_OBJECT
public:
    // The context must outlive this.
    explicit TavRegistryOutlineViewDataSource(const ExplorerContext &context,
                                              QObject *parent = nullptr);

    // What a reload did to the rows. The view opens the rows in toOpen, and all after a reset.
    struct Reloaded
    {
        bool isReset = false;
        bool isChanged = false;
        TavRegistryOutlineItem::Items toOpen;
    };
    // Shows the root node of the plane, rereading its children and filtering them. Rows come and go
    // one by one while they are few, or else in a reset. No node is selected afterwards.
    Reloaded reload(TavRegistryOutlineItem::Reread which);

    TavRegistryOutlineItem *rootOutlineItem(); // of the plane; null without a registry
    // The nodes of the planes that are not shown follow their entries.
    void rereadHiddenNodes();
    // Frees the nodes on another thread. Nothing may show them any more.
    void disposeOfNodes();

    qsizetype entryCount() const; // of the store, whatever is shown
    static TavRegistryOutlineItem *item(const QModelIndex &index); // null for the invisible top
    QModelIndex indexOf(const TavRegistryOutlineItem &item) const;

    TavRegistryOutlineItem *selectedItem() const { return selectedItem_; }
    void setSelectedItem(TavRegistryOutlineItem *item);        // marks the selection path
    void selectionDidChange(TavRegistryOutlineItem *selected); // by the user
    void itemDidExpand(const QModelIndex &index);
    void itemDidCollapse(const QModelIndex &index);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    // The header is hidden; a screen reader reads it.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

Q_SIGNALS:
    void outlineViewSelectionChanged();

private:
    bool showsRoot() const;
    void willRemoveRows(TavRegistryOutlineItem &parent, int first, int last) override;
    void didRemoveRows() override;
    void willInsertRows(TavRegistryOutlineItem &parent, int first, int last) override;
    void didInsertRows(TavRegistryOutlineItem &parent, int first, int last) override;

    const ExplorerContext &context_;
    ExpansionRecorder expansionRecorder_;
    // One root node for each plane that was shown.
    QHash<QString, std::shared_ptr<TavRegistryOutlineItem>> rootOutlineItemsInPlanes_;
    TavRegistryOutlineItem *root_ = nullptr; // null when it is not shown
    TavRegistryOutlineItem *selectedItem_ = nullptr;
    TavRegistryOutlineItem::Items toOpen_; // while reloading
};
