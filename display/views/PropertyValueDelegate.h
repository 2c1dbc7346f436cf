// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/views/StyledTextLayout.h"

#include <QCache>
#include <QStyledItemDelegate>

class QTreeView;
struct PlotLine;
class TavPropertiesOutlineViewDataSource;

// Draws the cells of a properties view. Values wrap inside their column, and rows grow to fit; the
// other cells align with a value's first line.
class PropertyValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    PropertyValueDelegate(QTreeView &view, const TavPropertiesOutlineViewDataSource &dataSource);

    // Call this before rows are laid out for other texts, another width or another font.
    void forgetLayouts();

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QWidget *createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const override;
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void setModelData(QWidget *editor, QAbstractItemModel *model,
                      const QModelIndex &index) const override;

Q_SIGNALS:
    // The row's button or its key was pressed.
    void readRequested(const QModelIndex &index);

protected:
    bool editorEvent(QEvent *event, QAbstractItemModel *model, const QStyleOptionViewItem &option,
                     const QModelIndex &index) override;
    bool eventFilter(QObject *editor, QEvent *event) override;

private:
    // Equal texts of equal width share one layout.
    struct LayoutKey
    {
        StyledText text;
        int width;

        friend bool operator==(const LayoutKey &, const LayoutKey &) = default;
        friend size_t qHash(const LayoutKey &key, size_t seed = 0)
        {
            return qHashMulti(seed, key.text.text(), key.width);
        }
    };

    QRect textRect(const QStyleOptionViewItem &option) const;
    int lineHeight(const QStyleOptionViewItem &option) const;
    bool hasButton(const QModelIndex &index) const;
    const PlotLine *sparkline(const QModelIndex &index) const; // null: none, or no room for it
    QRect buttonPlace(const QStyleOptionViewItem &option, const QModelIndex &index) const;
    int textWidth(const QModelIndex &index, const QStyleOptionViewItem &option) const;
    int rowHeight(const QModelIndex &index, const QStyleOptionViewItem &option) const;
    const ValueFonts &fonts(const QFont &font) const;
    const StyledTextLayout &layout(const QModelIndex &index, const QFont &font, int width) const;
    void paintText(QPainter &painter, const QStyleOptionViewItem &option,
                   const QModelIndex &index) const;
    void paintValue(QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index,
                    const QColor &color) const;

    QTreeView &view_;
    const TavPropertiesOutlineViewDataSource &dataSource_;
    QPersistentModelIndex pressed_;                       // the row whose button is held down
    mutable std::optional<ValueFonts> fonts_;             // for the last cell's font
    mutable QCache<LayoutKey, StyledTextLayout> layouts_; // in those fonts; cost: characters
};
