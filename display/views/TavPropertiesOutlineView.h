// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/views/PropertyPlaces.h"
#include "platform/widgets/OutlineView.h"

class PropertyValueDelegate;
class TavPropertiesOutlineViewDataSource;
class TavRegistryProperty;

// Shows the property tree of the selected entry and remembers expanded rows. Selection, scroll
// position and a value being read in place survive rereading the entry, and return when the user
// comes back to it.
class TavPropertiesOutlineView : public OutlineView
{
    Q_OBJECT
public:
    explicit TavPropertiesOutlineView(QWidget *parent = nullptr);

    // Call once; takes no ownership. The data source must outlive the view's use.
    void setDataSource(TavPropertiesOutlineViewDataSource &dataSource);
    TavPropertiesOutlineViewDataSource *dataSource() const { return dataSource_; }

    // Emits no selection change: the caller does that afterwards.
    void reloadData();
    void noteHeightOfAllRowsChanged();
    void setAllRowsExpanded(bool isExpanded);
    // The current one if several are selected; null: no selection.
    TavRegistryProperty *selectedItem() const;
    QString selectedText() const; // "key = value" for each selected row, from the top

protected:
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;

private:
    void setUpHeader();
    void openRememberedRows(const QModelIndex &top);
    void showRereadTree();
    void showOtherTree();
    QModelIndex anchorRow() const;
    void refreshEditor();
    PropertyPlaces::Place place() const;
    void goToPlace(const PropertyPlaces::Place &place);

    TavPropertiesOutlineViewDataSource *dataSource_ = nullptr;
    PropertyValueDelegate *delegate_ = nullptr;
    PropertyPlaces places_;
    bool isReloading_ = false;
};
