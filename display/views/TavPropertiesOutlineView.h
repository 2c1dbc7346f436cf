// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFilter.h"
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

    // Shows only the rows that the filter chooses, in this tree and in later ones; all for an empty
    // text. Opens rows for as long as that needs them. Selection and scroll position return.
    void setFilter(const QString &text);
    void refilter(); // values are shown in another way

Q_SIGNALS:
    void filtered(bool leavesNothing);

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
    void showRows();
    void hideRowsBelow(const QModelIndex &parent);
    void openRowsOfFilter();
    void closeRowsOfFilter();
    bool isKeptOpen(const QModelIndex &index) const;
    void goBackToUnfiltered();
    void setUnfilteredPlace(int scroll);
    int unfilteredScroll() const;
    PropertyPlaces::Place place() const;
    void goToPlace(const PropertyPlaces::Place &place);

    TavPropertiesOutlineViewDataSource *dataSource_ = nullptr;
    PropertyValueDelegate *delegate_ = nullptr;
    PropertyPlaces places_;
    std::optional<PropertyFilter> filter_;
    std::vector<QPersistentModelIndex> hiddenRows_; // by the filter
    std::vector<QPersistentModelIndex> openedRows_; // by the filter, not by the user
    QPersistentModelIndex currentRowBeforeFilter_;
    int scrollBeforeFilter_ = 0;
    bool isFiltering_ = false;
    bool isReloading_ = false;
};
