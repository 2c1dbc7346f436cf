#include "app/BookmarksTableModel.h"

#include "app/TavBookmarksController.h"

#include <QFontDatabase>

namespace {
constexpr double smallSize = 0.9; // of the general font

QString identifierOfColumn(int column)
{
    return column == 0 ? Bookmark::nameKey() : Bookmark::pathKey();
}

QFont smallSystemFont(bool isBold)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(font.pointSizeF() * smallSize);
    font.setBold(isBold);
    return font;
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
        return smallSystemFont(controller_.isDefaultBookmark(index.row()));
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
    return indexes.isEmpty() ? nullptr : controller_.pasteboardForRow(indexes.first().row());
}
