#pragma once

#include "model/TavRegistryEntryPath.h"
#include "platform/desktop/ExpansionRecorder.h"

#include <QAbstractItemModel>

class TavRegistryOutlineItem;
class TavWindowController;

// The rows of an entry tree, which are the nodes of the plane shown. What rows there are changes in
// reload alone, whatever becomes of the entries meanwhile.
class TavRegistryOutlineViewDataSource : public QAbstractItemModel
{
    Q_OBJECT
public:
    // The controller must outlive this.
    explicit TavRegistryOutlineViewDataSource(TavWindowController &windowController,
                                              QObject *parent = nullptr);

    // Shows the controller's root node anew. The change rereads its children, among others; without
    // one they are reread alone. No node is selected afterwards. False when the rows are the same
    // as before, so that there was no reset.
    bool reload(const std::function<void()> &change);

    static TavRegistryOutlineItem *item(const QModelIndex &index); // null for the invisible top
    QModelIndex indexOf(const TavRegistryOutlineItem &item) const;

    TavRegistryOutlineItem *selectedItem() const { return selectedItem_; }
    void setSelectedItem(TavRegistryOutlineItem *item); // marks the selection path
    void selectionDidChange(TavRegistryOutlineItem *selected);
    void itemDidExpand(const QModelIndex &index);
    void itemDidCollapse(const QModelIndex &index);

    QModelIndex index(int row, int column, const QModelIndex &parent = {}) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    bool hasChildren(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    bool isUpToDate() const;

    TavWindowController &windowController_;
    ExpansionRecorder expansionRecorder_;
    TavRegistryOutlineItem *root_ = nullptr; // owned by the controller
    TavRegistryOutlineItem *selectedItem_ = nullptr;
};
