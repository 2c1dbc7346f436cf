// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/Bookmark.h"

#include <QAbstractTableModel>
#include <vector>

class TavBookmarksController;

// A table model of the bookmarks: name and path.
class BookmarksTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit BookmarksTableModel(TavBookmarksController &controller);

    void reloadData(); // call after any change of the bookmarks
    // Replaces the controller's bookmarks by the given ones. Selection and edit follow those that
    // remain.
    void changeRows(std::vector<BookmarkRef> &bookmarks, const std::vector<BookmarkRef> &target);

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

private:
    void removeRowsMissingIn(std::vector<BookmarkRef> &bookmarks,
                             const std::vector<BookmarkRef> &target);
    void appendRowsMissingIn(std::vector<BookmarkRef> &bookmarks,
                             const std::vector<BookmarkRef> &target);

    TavBookmarksController &controller_;
    int rows_ = 0; // as last reported to the views
};
