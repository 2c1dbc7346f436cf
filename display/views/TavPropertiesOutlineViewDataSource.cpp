// SPDX-License-Identifier: Apache-2.0
#include "display/views/TavPropertiesOutlineViewDataSource.h"

#include "display/PropertyCounterparts.h"
#include "display/PropertyOrder.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/ValueReading.h"
#include "display/ValueStyles.h"
#include "display/comparison/ComparedValue.h"
#include "display/comparison/TextDifference.h"
#include "display/export/EscapedText.h"
#include "display/views/DifferenceIcons.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/PlainToolTip.h"

#include <QGuiApplication>
#include <QPalette>

namespace {
constexpr qsizetype maxShownWas = 100; // characters of an earlier value
} // namespace

using Reading = PropertiesViewController::Reading;

// The position of a node, which the node itself does not store.
struct TavPropertiesOutlineViewDataSource::Row
{
    TavRegistryProperty *item = nullptr;
    Row *parent = nullptr;
    int number = 0; // among its siblings, as shown
    bool hasMadeRows = false;
    std::vector<Row> rows = {};    // in natural order; created on demand, never moved
    std::vector<Row *> shown = {}; // the same in display order
    Row *successor = nullptr;      // while a newer tree takes over
};

TavPropertiesOutlineViewDataSource::TavPropertiesOutlineViewDataSource(
    PropertiesViewController &windowController, QObject *parent)
    : QAbstractItemModel(parent)
    , windowController_(windowController)
    , root_(std::make_unique<Row>())
{}

TavPropertiesOutlineViewDataSource::~TavPropertiesOutlineViewDataSource() = default;

const PropertyRef &TavPropertiesOutlineViewDataSource::nextRootItem() const
{
    return windowController_.rootPropertyItem();
}

bool TavPropertiesOutlineViewDataSource::isOfSameEntry() const
{
    const PropertyRef &newRoot = nextRootItem();
    return rootItem_ && newRoot && newRoot->registryEntry() == rootItem_->registryEntry();
}

void TavPropertiesOutlineViewDataSource::reload(const PropertyRef &older)
{
    const PropertyRef newRoot = nextRootItem();
    const bool isSameEntry = isOfSameEntry();
    const PropertyRef &predecessor = isSameEntry ? rootItem_ : older;
    if (newRoot && predecessor && predecessor != newRoot)
        expandedItems_.carryOver(*predecessor, *newRoot);
    // Formats may have changed since it was last shown.
    if (TavPropertyOutlineItem *const top = outlineItem(newRoot.get()); newRoot != rootItem_ && top)
        top->resetDisplayValueRecursive();
    if (isSameEntry)
        takeRowsOver(newRoot);
    else
        resetRows(newRoot);
}

void TavPropertiesOutlineViewDataSource::resetRows(const PropertyRef &newRoot)
{
    beginResetModel();
    root_ = std::make_unique<Row>(Row{newRoot.get(), nullptr, 0});
    const PropertyRef oldRoot = std::exchange(rootItem_, newRoot);
    endResetModel();
}

void TavPropertiesOutlineViewDataSource::takeRowsOver(const PropertyRef &newRoot)
{
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList kept = persistentIndexList();
    // The view may access the old rows until it has laid out the new ones.
    const auto oldRows =
        std::exchange(root_, std::make_unique<Row>(Row{newRoot.get(), nullptr, 0}));
    const PropertyRef oldRoot = std::exchange(rootItem_, newRoot);
    findSuccessors(*oldRows, *root_);
    QModelIndexList moved;
    moved.reserve(kept.size());
    for (const QModelIndex &index : kept) {
        Row *const row = rowOf(index)->successor;
        moved.append(row ? createIndex(row->number, index.column(), row) : QModelIndex());
    }
    changePersistentIndexList(kept, moved);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void TavPropertiesOutlineViewDataSource::findSuccessors(Row &older, Row &newer) const
{
    std::vector<std::pair<Row *, Row *>> pending{{&older, &newer}};
    while (!pending.empty()) {
        const auto [oldParent, newParent] = pending.back();
        pending.pop_back();
        if (!oldParent->hasMadeRows)
            continue;
        makeRowsBelow(*newParent);
        const auto positions =
            PropertyCounterparts::positionsOfChildren(*oldParent->item, *newParent->item);
        for (std::size_t i = 0; i < std::min(positions.size(), oldParent->rows.size()); ++i) {
            if (positions[i] < 0)
                continue;
            Row &row = newParent->rows[static_cast<std::size_t>(positions[i])];
            oldParent->rows[i].successor = &row;
            pending.emplace_back(&oldParent->rows[i], &row);
        }
    }
}

TavPropertiesOutlineViewDataSource::Row *
TavPropertiesOutlineViewDataSource::rowOf(const QModelIndex &index) const
{
    return index.isValid() ? static_cast<Row *>(index.internalPointer()) : root_.get();
}

TavPropertiesOutlineViewDataSource::Row &
TavPropertiesOutlineViewDataSource::madeRow(const QModelIndex &parent) const
{
    Row &row = *rowOf(parent);
    makeRowsBelow(row);
    return row;
}

void TavPropertiesOutlineViewDataSource::makeRowsBelow(Row &row) const
{
    if (row.hasMadeRows || !row.item)
        return;
    row.hasMadeRows = true;
    const qsizetype count = row.item->numberOfChildren();
    row.rows.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        row.rows.push_back(Row{row.item->childAtIndex(i), &row, i});
    sortRowsBelow(row);
}

void TavPropertiesOutlineViewDataSource::sortRowsBelow(Row &row) const
{
    row.shown.resize(row.rows.size());
    std::transform(row.rows.begin(), row.rows.end(), row.shown.begin(),
                   [](Row &below) { return &below; });
    if (sortColumn_ >= 0) {
        const auto by = static_cast<PropertyOrder::By>(sortColumn_);
        const bool isReversed = sortOrder_ == Qt::DescendingOrder;
        std::stable_sort(row.shown.begin(), row.shown.end(), [=](const Row *a, const Row *b) {
            return isReversed ? PropertyOrder::precedes(by, *b->item, *a->item)
                              : PropertyOrder::precedes(by, *a->item, *b->item);
        });
    }
    for (std::size_t i = 0; i < row.shown.size(); ++i)
        row.shown[i]->number = static_cast<int>(i);
}

void TavPropertiesOutlineViewDataSource::sort(int column, Qt::SortOrder order)
{
    const int known = column >= 0 && column <= ValueColumn ? column : -1;
    if (known == sortColumn_ && order == sortOrder_)
        return;
    sortColumn_ = known;
    sortOrder_ = order;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    const QModelIndexList kept = persistentIndexList();
    std::vector<Row *> pending{root_.get()};
    while (!pending.empty()) {
        Row &row = *pending.back();
        pending.pop_back();
        sortRowsBelow(row);
        for (Row &below : row.rows) {
            if (below.hasMadeRows)
                pending.push_back(&below);
        }
    }
    QModelIndexList moved;
    moved.reserve(kept.size());
    for (const QModelIndex &index : kept)
        moved.append(createIndex(rowOf(index)->number, index.column(), index.internalPointer()));
    changePersistentIndexList(kept, moved);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

TavRegistryProperty *TavPropertiesOutlineViewDataSource::item(const QModelIndex &index) const
{
    return index.isValid() ? rowOf(index)->item : nullptr;
}

QModelIndex TavPropertiesOutlineViewDataSource::indexOf(const TavRegistryProperty &item) const
{
    std::vector<const TavRegistryProperty *> way; // from the node up
    const TavRegistryProperty *node = &item;
    for (; node->parent(); node = node->parent())
        way.push_back(node);
    if (node != rootItem_.get() || way.empty())
        return {};
    Row *row = root_.get();
    for (auto next = way.rbegin(); next != way.rend(); ++next) {
        makeRowsBelow(*row);
        const auto position = static_cast<std::size_t>(PropertyCounterparts::position(**next));
        if (position >= row->rows.size())
            return {};
        row = &row->rows[position];
    }
    return createIndex(row->number, 0, row);
}

TavPropertyOutlineItem *TavPropertiesOutlineViewDataSource::outlineItem(TavRegistryProperty *item)
{
    const bool isOutlineItem =
        item && item->propertyClass().isKindOf(TavPropertyOutlineItem::staticPropertyClass());
    return isOutlineItem ? static_cast<TavPropertyOutlineItem *>(item) : nullptr;
}

bool TavPropertiesOutlineViewDataSource::isUnreadAttribute(const QModelIndex &index) const
{
    const TavRegistryProperty *const shown = item(index);
    const TavRegistryProperty *const table = shown ? shown->parent() : nullptr;
    return table && table->parent() == rootItem_.get() &&
           table->name() == QLatin1String("DxUnreadAttributes");
}

QString TavPropertiesOutlineViewDataSource::attribute(const QModelIndex &index) const
{
    const TavRegistryProperty *node = item(index);
    if (!node || isUnreadAttribute(index))
        return node ? node->name() : QString();
    QStringList way;
    for (; node->parent(); node = node->parent())
        way.prepend(node->name());
    return way.join(u'/');
}

Reading TavPropertiesOutlineViewDataSource::reading(const QModelIndex &index) const
{
    const QString its = attribute(index);
    return its.isNull() ? Reading::NotOffered : windowController_.readingOfAttribute(its);
}

void TavPropertiesOutlineViewDataSource::readAttribute(const QModelIndex &index)
{
    if (reading(index) == Reading::Offered)
        windowController_.readAttribute(attribute(index));
}

PropertiesViewController::Plotting
TavPropertiesOutlineViewDataSource::plotting(const QModelIndex &index) const
{
    const TavRegistryProperty *const shown = item(index);
    const bool isNumber = shown && shown->valueType() == RegistryValue::Type::Number;
    return isNumber ? windowController_.plotting(*shown)
                    : PropertiesViewController::Plotting::NotOffered;
}

void TavPropertiesOutlineViewDataSource::togglePlot(const QModelIndex &index)
{
    if (const TavRegistryProperty *const shown = item(index))
        windowController_.togglePlot(*shown);
}

const PlotLine *TavPropertiesOutlineViewDataSource::sparkline(const QModelIndex &index) const
{
    const TavRegistryProperty *const shown = item(index);
    return shown && !shown->isCollection() ? windowController_.sparklineOf(*shown) : nullptr;
}

bool TavPropertiesOutlineViewDataSource::isLink(const QModelIndex &index) const
{
    const TavRegistryProperty *const shown = item(index);
    return shown && shown->valueType() == RegistryValue::Type::String &&
           windowController_.isLink(*shown);
}

void TavPropertiesOutlineViewDataSource::followLink(const QModelIndex &index, bool inNewWindow)
{
    if (isLink(index))
        windowController_.followLink(*item(index), inNewWindow);
}

StyledText TavPropertiesOutlineViewDataSource::styledText(const QModelIndex &index) const
{
    StyledText text;
    if (TavPropertyOutlineItem *const shown = outlineItem(item(index))) {
        if (index.column() == KeyColumn)
            text = StyledText(shown->name(), {});
        else if (index.column() == TypeColumn)
            text = StyledText(shown->typeName(), {});
        else
            text = valueText(*shown, index);
    }
    return text.isNull() ? StyledText(QStringLiteral("ERROR!"), {}) : text;
}

StyledText TavPropertiesOutlineViewDataSource::valueText(TavRegistryProperty &item,
                                                         const QModelIndex &index) const
{
    if (isUnreadAttribute(index) && reading(index) == Reading::UnderWay)
        return {tr("being read…"), {}};
    if (stateOf(index) != RegistryStateUnchanged)
        return comparedText(item, index.column());
    if (index.column() == OldValueColumn)
        return {QStringLiteral(""), {}};
    const StyledText &value = outlineItem(&item)->displayValue();
    return isLink(index) ? StyledText(value.text(), ValueStyles::link) : value;
}

// The value on one side of a comparison, with the parts marked that are not on the other.
StyledText TavPropertiesOutlineViewDataSource::comparedText(TavRegistryProperty &item,
                                                            int column) const
{
    const auto textOf = [](const TavRegistryProperty *node) {
        const PropertyRef typed = node ? ComparedValue::typed(*node) : nullptr;
        auto *const shown =
            outlineItem(typed ? typed.get() : const_cast<TavRegistryProperty *>(node));
        return shown ? shown->displayValue() : StyledText(QStringLiteral(""), {});
    };
    const TavRegistryProperty *const newer =
        windowController_.differenceState(item) == RegistryStateTerminated ? nullptr : &item;
    const TavRegistryProperty *const older = windowController_.olderOf(item);
    const bool isOld = column == OldValueColumn;
    const StyledText text = textOf(isOld ? older : newer);
    if (!older || !newer || item.isCollection())
        return text;
    using Side = TextDifference::Side;
    StyledText::Ranges marks;
    quint32 start = 0;
    for (const auto &part : TextDifference(textOf(older).text(), textOf(newer).text())
                                .parts(isOld ? Side::Before : Side::After)) {
        const auto length = static_cast<quint32>(part.text.size());
        TextAttributes attributes = text.attributes();
        attributes.marked = true;
        if (part.kind == TextDifference::Part::Kind::Changed)
            marks.push_back({start, length, attributes});
        start += length;
    }
    return {text.text(), text.attributes(), std::move(marks)};
}

// Of a compared tree only: elsewhere states are not shown.
RegistryState TavPropertiesOutlineViewDataSource::stateOf(const QModelIndex &index) const
{
    return windowController_.comparesValues() ? windowController_.differenceState(*item(index))
                                              : RegistryStateUnchanged;
}

bool TavPropertiesOutlineViewDataSource::isItemExpandable(const TavRegistryProperty &item)
{
    return item.isCollection();
}

bool TavPropertiesOutlineViewDataSource::isItemExpanded(const TavRegistryProperty &item) const
{
    return expandedItems_.contains(item);
}

void TavPropertiesOutlineViewDataSource::itemDidExpand(const QModelIndex &index)
{
    TavRegistryProperty *const opened = item(index);
    if (opened && expansionRecorder_.shouldRecord())
        expandedItems_.insert(*opened);
}

void TavPropertiesOutlineViewDataSource::itemDidCollapse(const QModelIndex &index)
{
    const TavRegistryProperty *const closed = item(index);
    if (closed && expansionRecorder_.shouldRecord())
        expandedItems_.remove(*closed);
}

void TavPropertiesOutlineViewDataSource::noteAllItemsExpanded(bool isExpanded)
{
    std::vector<TavRegistryProperty *> pending;
    if (rootItem_)
        pending.push_back(rootItem_.get());
    while (!pending.empty()) {
        TavRegistryProperty *const item = pending.back();
        pending.pop_back();
        if (!isItemExpandable(*item))
            continue;
        if (isExpanded)
            expandedItems_.insert(*item);
        else
            expandedItems_.remove(*item);
        const auto children = item->children();
        pending.insert(pending.end(), children.begin(), children.end());
    }
}

// On one line, for the clipboard.
QString TavPropertiesOutlineViewDataSource::line(const QModelIndex &index) const
{
    QString path;
    for (const Row *row = rowOf(index); row->parent; row = row->parent) {
        const bool isKey = row->item->hasName() && !row->item->name().isEmpty();
        const QString step = isKey ? row->item->name()
                                   : u'[' + QString::number(row - row->parent->rows.data()) + u']';
        path = path.isEmpty() || path.startsWith(u'[') ? step + path : step + u'/' + path;
    }
    return escapedText(path) + QLatin1String(" = ") +
           escapedText(styledText(index.siblingAtColumn(ValueColumn)).text());
}

void TavPropertiesOutlineViewDataSource::selectionDidChange()
{
    windowController_.propertiesViewSelectionChanged();
}

QModelIndex TavPropertiesOutlineViewDataSource::index(int row, int column,
                                                      const QModelIndex &parent) const
{
    if (row < 0 || column < 0 || column >= columnCount() || row >= rowCount(parent))
        return {};
    return createIndex(row, column, madeRow(parent).shown[static_cast<std::size_t>(row)]);
}

QModelIndex TavPropertiesOutlineViewDataSource::parent(const QModelIndex &index) const
{
    if (!index.isValid())
        return {};
    Row *const parent = rowOf(index)->parent;
    return parent == root_.get() ? QModelIndex() : createIndex(parent->number, 0, parent);
}

int TavPropertiesOutlineViewDataSource::rowCount(const QModelIndex &parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(madeRow(parent).rows.size());
}

int TavPropertiesOutlineViewDataSource::columnCount(const QModelIndex &) const
{
    return windowController_.comparesValues() ? OldValueColumn + 1 : ValueColumn + 1;
}

bool TavPropertiesOutlineViewDataSource::hasChildren(const QModelIndex &parent) const
{
    // An empty collection is expandable, but has no rows for the arrow to show.
    const TavRegistryProperty *const item = rowOf(parent)->item;
    return parent.column() <= 0 && item && isItemExpandable(*item) && item->numberOfChildren() > 0;
}

QVariant TavPropertiesOutlineViewDataSource::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return {};
    TavRegistryProperty *const shown = item(index);
    const bool isValue = index.column() == ValueColumn;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return styledText(index).text();
    case Qt::ToolTipRole: {
        const TavPropertyOutlineItem *const described = isValue ? outlineItem(shown) : nullptr;
        if (!described)
            return {};
        QStringList texts{described->valueTooltip(), ValueReading::ofProperty(*described),
                          changeText(*shown)};
        texts.removeAll(QString());
        return texts.isEmpty() ? QVariant() : plainToolTip(texts.join(u'\n'));
    }
    case Qt::BackgroundRole:
        return isValue && isTinted(*shown) ? QVariant(tint()) : QVariant();
    case Qt::AccessibleDescriptionRole:
        if (isValue && windowController_.changeOf(*shown))
            return changeText(*shown);
        return isUnreadAttribute(index) && reading(index) == Reading::Offered
                   ? tr("Press the space bar to read it.")
               : isValue && isLink(index) ? tr("A link. Press Return to follow it.")
                                          : QVariant();
    case Qt::DecorationRole:
        return index.column() == KeyColumn && stateOf(index) != RegistryStateUnchanged
                   ? QVariant(DifferenceIcons::ofState(stateOf(index)))
                   : QVariant();
    case Qt::ForegroundRole:
        if (index.column() == KeyColumn && stateOf(index) != RegistryStateUnchanged)
            return DifferenceIcons::colorOfState(stateOf(index));
        if (isValue && (shown->valueType() == RegistryValue::Type::Array ||
                        shown->valueType() == RegistryValue::Type::Dictionary))
            return QGuiApplication::palette().brush(QPalette::PlaceholderText);
        return {};
    default:
        return {};
    }
}

// Null: it did not change.
QString TavPropertiesOutlineViewDataSource::changeText(const TavRegistryProperty &item) const
{
    const auto change = windowController_.changeOf(item);
    if (!change)
        return {};
    constexpr qint64 second = 1000;
    constexpr qint64 minute = 60 * second;
    const qint64 ago = QDateTime::currentMSecsSinceEpoch() - change->time;
    const QString was = change->was.size() > maxShownWas
                            ? change->was.left(maxShownWas) + QChar(u'…')
                            : change->was;
    return ago < 2 * minute ? tr("changed %1 s ago, was %2").arg(ago / second).arg(was)
                            : tr("changed %1 min ago, was %2").arg(ago / minute).arg(was);
}

bool TavPropertiesOutlineViewDataSource::isTinted(const TavRegistryProperty &item) const
{
    const auto change = windowController_.changeOf(item);
    return change && QDateTime::currentMSecsSinceEpoch() - change->time < ValueChange::tinted;
}

// Pale enough for the text to stay readable in every theme.
QColor TavPropertiesOutlineViewDataSource::tint()
{
    constexpr int alpha = 72;
    QColor color = QGuiApplication::palette().color(QPalette::Highlight);
    color.setAlpha(alpha);
    return color;
}

bool TavPropertiesOutlineViewDataSource::setData(const QModelIndex &, const QVariant &, int)
{
    SystemBeep::beep();
    return false;
}

QVariant TavPropertiesOutlineViewDataSource::headerData(int section, Qt::Orientation orientation,
                                                        int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case KeyColumn:
        return tr("Key or Index");
    case TypeColumn:
        return tr("Type");
    case ValueColumn:
        return windowController_.comparesValues() ? tr("New Value") : tr("Value");
    case OldValueColumn:
        return tr("Old Value");
    default:
        return {};
    }
}

Qt::ItemFlags TavPropertiesOutlineViewDataSource::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    flags.setFlag(Qt::ItemIsEditable, mayEdit(*item(index), index.column()));
    flags.setFlag(Qt::ItemNeverHasChildren, !isItemExpandable(*item(index)));
    return flags;
}

// Editing only serves to select and copy a part of a text.
bool TavPropertiesOutlineViewDataSource::mayEdit(const TavRegistryProperty &item, int column)
{
    using Type = RegistryValue::Type;
    switch (column) {
    case KeyColumn:
        return !item.parent() || item.parent()->valueType() != Type::Array;
    case ValueColumn:
        return item.valueType() != Type::Array && item.valueType() != Type::Dictionary;
    default:
        return false;
    }
}
