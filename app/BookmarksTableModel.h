#pragma once

#include <QAbstractTableModel>

class TavBookmarksController;

// The bookmarks as the rows of a table: name and path.
class BookmarksTableModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    explicit BookmarksTableModel(TavBookmarksController &controller);

    void reloadData(); // after any change of the bookmarks

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    QStringList mimeTypes() const override;
    QMimeData *mimeData(const QModelIndexList &indexes) const override;

private:
    TavBookmarksController &controller_;
    int rows_ = 0; // as the views know them
};
