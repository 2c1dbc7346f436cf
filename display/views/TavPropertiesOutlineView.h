#pragma once

#include "platform/desktop/OutlineView.h"

class PropertyValueDelegate;
class TavPropertiesOutlineViewDataSource;
class TavRegistryProperty;

// Shows the property tree of the selected entry and opens again what the user had opened.
class TavPropertiesOutlineView : public OutlineView
{
    Q_OBJECT
public:
    explicit TavPropertiesOutlineView(QWidget *parent = nullptr);

    // Once; takes no ownership. The data source must outlive the view's use.
    void setDataSource(TavPropertiesOutlineViewDataSource &dataSource);
    TavPropertiesOutlineViewDataSource *dataSource() const { return dataSource_; }

    void reloadData();
    void noteHeightOfAllRowsChanged();
    void setAllRowsExpanded(bool isExpanded);
    TavRegistryProperty *selectedItem() const; // null when no row is selected

protected:
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void setUpHeader();
    void openRememberedRows(const QModelIndex &top);

    TavPropertiesOutlineViewDataSource *dataSource_ = nullptr;
    PropertyValueDelegate *delegate_ = nullptr;
};
