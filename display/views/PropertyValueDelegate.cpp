// SPDX-License-Identifier: Apache-2.0
#include "display/views/PropertyValueDelegate.h"

#include "display/views/DifferenceIcons.h"
#include "display/views/ReadButton.h"
#include "display/views/Sparkline.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "platform/widgets/OutlineRowDelegate.h"
#include "platform/widgets/VisibleText.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTreeView>

namespace {
constexpr int horizontalMargin = 4;
constexpr int verticalMargin = OutlineRowDelegate::verticalMargin;
constexpr int maxMeasuredLength = 500; // characters
constexpr int charactersLaidOut = 2'000'000;
constexpr const char *shownText = "shownText";

bool isValue(const QModelIndex &index)
{
    return index.column() >= TavPropertiesOutlineViewDataSource::ValueColumn;
}

// Whether a text surely takes one line, decided without a layout; false for long texts.
bool fitsOneLine(const StyledText &styled, const ValueFonts &fonts, int width)
{
    const QString &text = styled.text();
    if (text.size() > maxMeasuredLength || text.contains(u'\n') || text.contains(u'\r'))
        return false;
    return QFontMetrics(fonts.of(styled.attributes())).horizontalAdvance(text) <= width;
}
} // namespace

PropertyValueDelegate::PropertyValueDelegate(QTreeView &view,
                                             const TavPropertiesOutlineViewDataSource &dataSource)
    : QStyledItemDelegate(&view)
    , view_(view)
    , dataSource_(dataSource)
    , layouts_(charactersLaidOut)
{}

QRect PropertyValueDelegate::textRect(const QStyleOptionViewItem &option) const
{
    const int sign = option.features & QStyleOptionViewItem::HasDecoration
                         ? option.decorationSize.width() + horizontalMargin
                         : 0;
    return option.rect.adjusted(horizontalMargin + sign, verticalMargin, -horizontalMargin,
                                -verticalMargin);
}

int PropertyValueDelegate::lineHeight(const QStyleOptionViewItem &option) const
{
    return option.fontMetrics.height() + 2 * verticalMargin;
}

const ValueFonts &PropertyValueDelegate::fonts(const QFont &font) const
{
    if (!fonts_ || fonts_->plain != font) {
        layouts_.clear();
        fonts_.emplace(font);
    }
    return *fonts_;
}

void PropertyValueDelegate::forgetLayouts()
{
    layouts_.clear();
    fonts_.reset();
}

const StyledTextLayout &PropertyValueDelegate::layout(const QModelIndex &index, const QFont &font,
                                                      int width) const
{
    const ValueFonts &itsFonts = fonts(font); // a new font clears
    const LayoutKey key{dataSource_.styledText(index), width};
    if (const StyledTextLayout *known = layouts_.object(key))
        return *known;
    auto *made = new StyledTextLayout(key.text, itsFonts, view_.palette(), width);
    // QCache would delete one that is too large.
    const auto cost = std::min<qsizetype>(key.text.text().size() + 1, charactersLaidOut);
    layouts_.insert(key, made, cost);
    return *made;
}

QSize PropertyValueDelegate::sizeHint(const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    QStyleOptionViewItem styled = option;
    styled.fontMetrics = QFontMetrics(styled.font);
    if (!isValue(index)) {
        const int width =
            styled.fontMetrics.horizontalAdvance(visibleText(index.data().toString()));
        const int sign =
            index.data(Qt::DecorationRole).isValid() ? DifferenceIcons::size + horizontalMargin : 0;
        return {width + sign + 2 * horizontalMargin, lineHeight(styled)};
    }
    return {view_.columnWidth(index.column()), rowHeight(index, styled)};
}

bool PropertyValueDelegate::hasButton(const QModelIndex &index) const
{
    return index.column() != TavPropertiesOutlineViewDataSource::OldValueColumn &&
           dataSource_.isUnreadAttribute(index) &&
           dataSource_.reading(index) == PropertiesViewController::Reading::Offered;
}

QRect PropertyValueDelegate::buttonPlace(const QStyleOptionViewItem &option,
                                         const QModelIndex &index) const
{
    const StyledText text = dataSource_.styledText(index);
    const QFontMetrics metrics(fonts(option.font).of(text.attributes()));
    return ReadButton::place(option,
                             horizontalMargin + std::min(metrics.horizontalAdvance(text.text()),
                                                         textWidth(index, option)));
}

int PropertyValueDelegate::textWidth(const QModelIndex &index,
                                     const QStyleOptionViewItem &option) const
{
    const int width = view_.columnWidth(index.column()) - 2 * horizontalMargin;
    return hasButton(index)   ? width - ReadButton::room(option.fontMetrics)
           : sparkline(index) ? width - Sparkline::room(option.fontMetrics)
                              : width;
}

const PlotLine *PropertyValueDelegate::sparkline(const QModelIndex &index) const
{
    constexpr int leastShare = 2;
    const bool hasRoom =
        view_.columnWidth(index.column()) > leastShare * Sparkline::room(view_.fontMetrics());
    return hasRoom && index.column() == TavPropertiesOutlineViewDataSource::ValueColumn
               ? dataSource_.sparkline(index)
               : nullptr;
}

int PropertyValueDelegate::rowHeight(const QModelIndex &index,
                                     const QStyleOptionViewItem &option) const
{
    const int width = textWidth(index, option);
    if (fitsOneLine(dataSource_.styledText(index), fonts(option.font), width))
        return lineHeight(option);
    const int height = qCeil(layout(index, option.font, width).height()) + 2 * verticalMargin;
    return std::max(height, lineHeight(option));
}

void PropertyValueDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    QStyleOptionViewItem styled = option;
    initStyleOption(&styled, index);
    styled.text.clear();
    const QStyle *const style = view_.style();
    style->drawControl(QStyle::CE_ItemViewItem, &styled, painter, &view_);
    painter->save();
    painter->setClipRect(styled.rect, Qt::IntersectClip);
    paintText(*painter, styled, index);
    painter->restore();
}

void PropertyValueDelegate::paintText(QPainter &painter, const QStyleOptionViewItem &option,
                                      const QModelIndex &index) const
{
    const bool isSelected = option.state & QStyle::State_Selected;
    const QPalette::ColorGroup group =
        option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor color =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    if (isValue(index)) {
        paintValue(painter, option, index, color);
        return;
    }
    const QRect rect = textRect(option);
    const QRect line(rect.left(), rect.top(), rect.width(), option.fontMetrics.height());
    const QString text = visibleText(index.data().toString());
    painter.setPen(color);
    painter.setFont(option.font);
    painter.drawText(line, static_cast<int>(Qt::AlignLeft | Qt::AlignVCenter) | Qt::TextSingleLine,
                     option.fontMetrics.elidedText(text, Qt::ElideRight, line.width()));
}

void PropertyValueDelegate::paintValue(QPainter &painter, const QStyleOptionViewItem &option,
                                       const QModelIndex &index, const QColor &color) const
{
    const QRect rect = textRect(option);
    const StyledTextLayout &text = layout(index, option.font, textWidth(index, option));
    // Shares the key's baseline, although the fonts may differ.
    const qreal shift = std::max(0.0, option.fontMetrics.ascent() - text.firstAscent());
    const bool isSelected = option.state & QStyle::State_Selected;
    painter.setPen(color);
    // Limited, because a value may be many times as high as the view.
    const QRect seen = option.rect & view_.viewport()->rect();
    text.draw(painter, QPointF(rect.left(), rect.top() + shift), seen,
              isSelected ? &color : nullptr);
    if (const PlotLine *const line = sparkline(index))
        Sparkline::paint(painter, Sparkline::place(option), *line, color);
    if (hasButton(index))
        ReadButton::paint(painter, option, buttonPlace(option, index),
                          pressed_ == index && QGuiApplication::mouseButtons() != Qt::NoButton);
}

bool PropertyValueDelegate::editorEvent(QEvent *event, QAbstractItemModel *model,
                                        const QStyleOptionViewItem &option,
                                        const QModelIndex &index)
{
    const auto isOnButton = [&] {
        const auto *const mouse = static_cast<const QMouseEvent *>(event);
        return isValue(index) && mouse->button() == Qt::LeftButton && hasButton(index) &&
               buttonPlace(option, index).contains(mouse->position().toPoint());
    };
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        pressed_ = isOnButton() ? index : QModelIndex();
        return pressed_.isValid();
    case QEvent::MouseButtonRelease:
        if (std::exchange(pressed_, QPersistentModelIndex()) != index || !isOnButton())
            return false;
        Q_EMIT readRequested(index);
        return true;
    case QEvent::KeyPress:
        if (static_cast<const QKeyEvent *>(event)->key() != Qt::Key_Space || !hasButton(index))
            return false;
        Q_EMIT readRequested(index);
        return true;
    default:
        return QStyledItemDelegate::editorEvent(event, model, option, index);
    }
}

QWidget *PropertyValueDelegate::createEditor(QWidget *parent, const QStyleOptionViewItem &option,
                                             const QModelIndex &index) const
{
    // Placed like the text, with the same line breaks as far as possible.
    const StyledText text = dataSource_.styledText(index);
    auto *editor = new QPlainTextEdit(parent);
    editor->setFont(fonts(option.font).of(text.attributes()));
    editor->setWordWrapMode(StyledTextLayout::wrapMode(text));
    editor->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    editor->setReadOnly(true);
    editor->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    editor->setFrameShape(QFrame::NoFrame);
    editor->document()->setDocumentMargin(verticalMargin);
    editor->setAccessibleName(tr("Text of the cell"));
    return editor;
}

void PropertyValueDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    // Keeps the user's selection while the text is the same.
    const QVariant text = index.data(Qt::EditRole);
    if (editor->property(shownText) == text)
        return;
    auto *const field = qobject_cast<QPlainTextEdit *>(editor);
    field->setProperty(shownText, text); // the field changes the line ends
    field->setPlainText(text.toString());
    field->selectAll();
}

void PropertyValueDelegate::setModelData(QWidget *editor, QAbstractItemModel *model,
                                         const QModelIndex &index) const
{
    model->setData(index, qobject_cast<QPlainTextEdit *>(editor)->toPlainText(), Qt::EditRole);
}

bool PropertyValueDelegate::eventFilter(QObject *editor, QEvent *event)
{
    auto *const field = qobject_cast<QPlainTextEdit *>(editor);
    if (field && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            Q_EMIT commitData(field);
            Q_EMIT closeEditor(field, NoHint);
            return true;
        }
    }
    // Leaving the editor never changes the value.
    if (field && event->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        if (reason != Qt::PopupFocusReason && reason != Qt::MenuBarFocusReason &&
            reason != Qt::ActiveWindowFocusReason)
            Q_EMIT closeEditor(field, NoHint);
        return false;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}
