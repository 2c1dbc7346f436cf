// SPDX-License-Identifier: Apache-2.0
#include "app/BookmarksTableModel.h"

#include "app/TavBookmarksController.h"

#include <QFont>

namespace {
QString identifierOfColumn(int column)
{
    return column == 0 ? Bookmark::nameKey() : Bookmark::pathKey();
}

int rowIn(const std::vector<BookmarkRef> &bookmarks, const BookmarkRef &bookmark)
{
    const auto found = std::find(bookmarks.begin(), bookmarks.end(), bookmark);
    return found != bookmarks.end() ? static_cast<int>(found - bookmarks.begin()) : -1;
}
} // namespace

BookmarksTableModel::BookmarksTableModel(TavBookmarksController &controller)
    : controller_(controller)
    , rows_(controller.numberOfRowsInTableView())
{}

void BookmarksTableModel::reloadData()
{
    beginResetModel();
    rows_ = controller_.numberOfRowsInTableView();
    endResetModel();
}

void BookmarksTableModel::changeRows(std::vector<BookmarkRef> &bookmarks,
                                     const std::vector<BookmarkRef> &target)
{
    removeRowsMissingIn(bookmarks, target);
    appendRowsMissingIn(bookmarks, target);
    Q_EMIT layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QModelIndexList after;
    for (const QModelIndex &index : before) {
        const BookmarkRef &bookmark = bookmarks[static_cast<std::size_t>(index.row())];
        after.append(this->index(rowIn(target, bookmark), index.column()));
    }
    bookmarks = target;
    changePersistentIndexList(before, after);
    Q_EMIT layoutChanged(); // dataChanged() would reset the text of an open editor
}

void BookmarksTableModel::removeRowsMissingIn(std::vector<BookmarkRef> &bookmarks,
                                              const std::vector<BookmarkRef> &target)
{
    for (int row = rows_ - 1; row >= 0; --row) {
        if (rowIn(target, bookmarks[static_cast<std::size_t>(row)]) >= 0)
            continue;
        beginRemoveRows({}, row, row);
        bookmarks.erase(bookmarks.begin() + row);
        --rows_;
        endRemoveRows();
    }
}

void BookmarksTableModel::appendRowsMissingIn(std::vector<BookmarkRef> &bookmarks,
                                              const std::vector<BookmarkRef> &target)
{
    for (const BookmarkRef &bookmark : target) {
        if (rowIn(bookmarks, bookmark) >= 0)
            continue;
        beginInsertRows({}, rows_, rows_);
        bookmarks.push_back(bookmark);
        ++rows_;
        endInsertRows();
    }
}

int BookmarksTableModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int BookmarksTableModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : 2;
}

QVariant BookmarksTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::DisplayRole)
        return section == 0 ? tr("Name") : tr("Path");
    return role == Qt::TextAlignmentRole ? QVariant(Qt::AlignLeading | Qt::AlignVCenter)
                                         : QVariant();
}

QVariant BookmarksTableModel::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return controller_.objectValueForTableColumn(identifierOfColumn(index.column()),
                                                     index.row());
    case Qt::FontRole:
        return controller_.willDisplayCell(index.row());
    default:
        return {};
    }
}

bool BookmarksTableModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole)
        return false;
    controller_.setObjectValue(value.toString(), identifierOfColumn(index.column()), index.row());
    Q_EMIT dataChanged(this->index(0, 0), this->index(rows_ - 1, 1));
    return true;
}

Qt::ItemFlags BookmarksTableModel::flags(const QModelIndex &index) const
{
    return index.isValid()
               ? QAbstractTableModel::flags(index) | Qt::ItemIsEditable | Qt::ItemIsDragEnabled
               : Qt::NoItemFlags;
}

QStringList BookmarksTableModel::mimeTypes() const
{
    return {QStringLiteral("text/plain"), TavBookmarksController::pasteboardType()};
}

QMimeData *BookmarksTableModel::mimeData(const QModelIndexList &indexes) const
{
    return controller_.writeRowsWithIndexes(indexes);
}
