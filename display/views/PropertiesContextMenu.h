// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMenu>
#include <QPersistentModelIndex>

class TavPropertiesOutlineView;

// The context menu of one property.
class PropertiesContextMenu : public QMenu
{
    Q_OBJECT
public:
    PropertiesContextMenu(TavPropertiesOutlineView &view, const QModelIndex &index);

private:
    void addLinkActions();
    void addReadAction();
    void addPlotAction();
    void addCopyActions();
    void addExpansionActions();
    void addShowAsMenu();
    void addFormatAction();
    void copy(const QString &text) const;
    QString cellText(int column) const;
    QString path() const;

    TavPropertiesOutlineView &view_;
    QPersistentModelIndex index_; // its row may disappear while the menu is open
};
