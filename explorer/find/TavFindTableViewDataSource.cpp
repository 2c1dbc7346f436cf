// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/TavFindTableViewDataSource.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "explorer/EntryTextStyle.h"
#include "explorer/ExplorerContext.h"
#include "explorer/find/FindSession.h"
#include "explorer/find/FoundEntryKey.h"
#include "platform/host/SystemBeep.h"
#include "platform/widgets/InputEvents.h"
#include "platform/widgets/OutlineRowDelegate.h"
#include "platform/widgets/PlainToolTip.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTableView>

namespace {
QString textOf(const RegistryValue &value)
{
    return value.type() == RegistryValue::Type::Number ? QString::number(value.numberBits())
                                                       : visibleText(value.toString());
}
} // namespace

TavFindTableViewDataSource::TavFindTableViewDataSource(const ExplorerContext &context,
                                                       const FindSession &session,
                                                       QTableView &findTableView,
                                                       QLineEdit &findPreviewField,
                                                       QLabel &findNumMatchedField)
    : context_(context)
    , session_(session)
    , findTableView_(findTableView)
    , findPreviewField_(findPreviewField)
    , findNumMatchedField_(findNumMatchedField)
    , eventOfVisit_(InputEvents::instance().current())
{
    setUpTable();
    connect(&findPreviewField_, &QLineEdit::textChanged, this,
            &TavFindTableViewDataSource::findPreviewChanged);
    connect(findTableView_.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!isReloading_)
            findPreviewSelected();
    });
    connect(&findTableView_, &QTableView::pressed, this,
            &TavFindTableViewDataSource::rowChosenAgain);
    connect(&findTableView_, &QTableView::activated, this,
            &TavFindTableViewDataSource::rowChosenAgain);
    numberOfRowsInTableView();
}

void TavFindTableViewDataSource::setUpTable()
{
    findTableView_.setModel(this);
    auto *const delegate = new OutlineRowDelegate(&findTableView_);
    findTableView_.setItemDelegate(delegate);
    findTableView_.setSelectionBehavior(QAbstractItemView::SelectRows);
    findTableView_.setSelectionMode(QAbstractItemView::SingleSelection);
    findTableView_.setContextMenuPolicy(Qt::CustomContextMenu);
    findTableView_.setEditTriggers(QAbstractItemView::NoEditTriggers);
    findTableView_.setTabKeyNavigation(false);
    findTableView_.setShowGrid(false);
    findTableView_.setWordWrap(false);
    findTableView_.verticalHeader()->hide();
    findTableView_.verticalHeader()->setDefaultSectionSize(findTableView_.fontMetrics().height() +
                                                           2 * OutlineRowDelegate::verticalMargin);
    QHeaderView &header = *findTableView_.horizontalHeader();
    header.setSectionResizeMode(PropertyColumn, QHeaderView::Stretch);
    header.setDefaultAlignment(Qt::AlignLeading | Qt::AlignVCenter);
    header.setHighlightSections(false);
    header.resizeSection(NameColumn, findTableView_.fontMetrics().averageCharWidth() * 27);
    // The third click on a header restores the order of entries.
    header.setSortIndicatorClearable(true);
    header.setSortIndicator(-1, Qt::AscendingOrder);
    findTableView_.setSortingEnabled(true);
}

int TavFindTableViewDataSource::numberOfRowsInTableView()
{
    const auto &found = session_.foundObjects();
    findNumMatchedField_.setText(countText());
    return found ? static_cast<int>(found->size()) : 0;
}

QString TavFindTableViewDataSource::countText() const
{
    const auto &found = session_.foundObjects();
    if (!found)
        return tr("No search");
    const auto count = found->size();
    const QString all =
        count == 1 ? tr("%1 object matches").arg(count) : tr("%1 objects match").arg(count);
    const auto inPlane =
        std::count_if(found->begin(), found->end(), [this](const TavRegistryEntry *entry) {
            return entry->isRegistryRoot() ||
                   !entry->parentsInPlane(context_.registryPlane()).empty();
        });
    return inPlane == count ? all : tr("%1, %2 in this plane").arg(all).arg(inPlane);
}

void TavFindTableViewDataSource::reloadData()
{
    const QScopedValueRollback reloading(isReloading_, true);
    const int rowBefore = selectedRow();
    const EntryRef selected = entryAtIndex(rowBefore);
    const bool wasInSight = findTableView_.viewport()->rect().intersects(
        findTableView_.visualRect(index(rowBefore, NameColumn)));
    const int scrolled = findTableView_.verticalScrollBar()->value();
    beginResetModel();
    sorted_.clear();
    rows_ = numberOfRowsInTableView();
    endResetModel();
    const int row = selected ? rowOf(selected) : -1;
    if (row < 0)
        return;
    restoreSelection(row);
    // A row that was scrolled out of sight stays there.
    if (wasInSight)
        findTableView_.verticalScrollBar()->setValue(scrolled + (row - rowBefore) * scrollStep());
}

// Without scrolling to it.
void TavFindTableViewDataSource::restoreSelection(int row)
{
    findTableView_.setAutoScroll(false);
    findTableView_.selectionModel()->setCurrentIndex(
        index(row, NameColumn), QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    findTableView_.setAutoScroll(true);
    findTableView_.doItemsLayout();
}

int TavFindTableViewDataSource::rowOf(const EntryRef &entry) const
{
    const std::vector<EntryRef> &entries = sortedEntries();
    const auto found = std::find(entries.begin(), entries.end(), entry);
    return found == entries.end() ? -1 : static_cast<int>(found - entries.begin());
}

// How far the scroll bar moves from one row to the next.
int TavFindTableViewDataSource::scrollStep() const
{
    return findTableView_.verticalScrollMode() == QAbstractItemView::ScrollPerItem
               ? 1
               : findTableView_.verticalHeader()->defaultSectionSize();
}

void TavFindTableViewDataSource::redisplay()
{
    numberOfRowsInTableView();
    findTableView_.viewport()->update();
}

const std::vector<EntryRef> &TavFindTableViewDataSource::sortedEntries() const
{
    if (sorted_.empty() && session_.foundObjects()) {
        const auto &found = *session_.foundObjects();
        for (TavRegistryEntry *entry :
             TavRegistryEntry::sortedArrayForPlane({found.begin(), found.end()}, QString()))
            sorted_.push_back(entry->shared_from_this());
        if (sortColumn_ >= 0)
            sortByColumn();
    }
    return sorted_;
}

void TavFindTableViewDataSource::sortByColumn() const
{
    struct Keyed
    {
        FoundEntryKey key;
        EntryRef entry;
    };
    std::vector<Keyed> keyed;
    keyed.reserve(sorted_.size());
    for (EntryRef &entry : sorted_)
        keyed.push_back({keyOf(*entry), std::move(entry)});
    const bool isReversed = sortOrder_ == Qt::DescendingOrder;
    std::stable_sort(keyed.begin(), keyed.end(), [=](const Keyed &a, const Keyed &b) {
        return isReversed ? b.key < a.key : a.key < b.key;
    });
    std::transform(keyed.begin(), keyed.end(), sorted_.begin(),
                   [](Keyed &item) { return std::move(item.entry); });
}

// Without the property tree: there may be very many.
FoundEntryKey TavFindTableViewDataSource::keyOf(const TavRegistryEntry &entry) const
{
    const QString key = findPreviewField_.text();
    if (sortColumn_ == NameColumn)
        return FoundEntryKey(entry.nameAtLocationInPlane(QString()));
    if (key.isEmpty())
        return {};
    if (!entry.table().isNone()) {
        const RegistryValue &value = entry.table().member(key);
        return FoundEntryKey(value.isNone() ? entry.valueForSpecialProperty(key) : value);
    }
    const TavRegistryProperty *const property =
        entry.properties() ? entry.properties()->childWithName(key) : nullptr;
    return FoundEntryKey(property ? property->value() : entry.valueForSpecialProperty(key));
}

void TavFindTableViewDataSource::sort(int column, Qt::SortOrder order)
{
    const int known = column >= 0 && column < ColumnCount ? column : -1;
    if (known == sortColumn_ && order == sortOrder_)
        return;
    sortColumn_ = known;
    sortOrder_ = order;
    reloadData();
}

EntryRef TavFindTableViewDataSource::entryAtIndex(int row) const
{
    if (row < 0 || row >= rows_)
        return nullptr;
    const auto index = static_cast<std::size_t>(row);
    return index < sortedEntries().size() ? sortedEntries()[index] : nullptr;
}

QVariant TavFindTableViewDataSource::objectValueForTableColumn(int column, int row) const
{
    const EntryRef entry = entryAtIndex(row);
    if (!entry)
        return {};
    return column == NameColumn ? entry->nameAtLocationInPlane(QString()) : previewOf(*entry);
}

QString TavFindTableViewDataSource::previewOf(const TavRegistryEntry &entry) const
{
    const QString key = findPreviewField_.text();
    if (key.isEmpty())
        return {};
    TavRegistryProperty *const property =
        entry.properties() ? entry.properties()->childWithName(key) : nullptr;
    if (!property)
        return textOf(entry.valueForSpecialProperty(key));
    auto *const item = dynamic_cast<TavPropertyOutlineItem *>(property);
    return item ? visibleText(item->displayValue().text()) : QString();
}

void TavFindTableViewDataSource::findPreviewChanged()
{
    Q_EMIT headerDataChanged(Qt::Horizontal, PropertyColumn, PropertyColumn);
    if (sortColumn_ == PropertyColumn)
        return reloadData();
    if (rows_ > 0)
        Q_EMIT dataChanged(index(0, PropertyColumn), index(rows_ - 1, PropertyColumn));
}

int TavFindTableViewDataSource::selectedRow() const
{
    const QModelIndexList rows = findTableView_.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

// Ignores the press of a button or a key that has already gone there by selecting the row.
void TavFindTableViewDataSource::rowChosenAgain()
{
    if (eventOfVisit_ != InputEvents::instance().current())
        findPreviewSelected();
}

void TavFindTableViewDataSource::findPreviewSelected()
{
    eventOfVisit_ = InputEvents::instance().current();
    const EntryRef entry = entryAtIndex(selectedRow());
    if (!entry)
        return;
    if (const auto path = pathOf(*entry))
        Q_EMIT pathChosen(*path);
    else
        SystemBeep::beep();
}

std::optional<TavRegistryEntryPath>
TavFindTableViewDataSource::pathOf(TavRegistryEntry &entry) const
{
    auto path = entry.entryPathInPlane(context_.registryPlane(), 0);
    for (const QString &plane : context_.dataStore()->registryPlanes()) {
        if (!path)
            path = entry.entryPathInPlane(plane, 0);
    }
    return path;
}

QString TavFindTableViewDataSource::toolTipOf(TavRegistryEntry &entry) const
{
    const QString text = context_.toolTipForRegistryEntry(entry);
    const auto path = pathOf(entry);
    return path ? path->registryPath() + u'\n' + text : text;
}

int TavFindTableViewDataSource::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : rows_;
}

int TavFindTableViewDataSource::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant TavFindTableViewDataSource::headerData(int section, Qt::Orientation orientation,
                                                int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    if (section == NameColumn)
        return tr("Name");
    const QString key = findPreviewField_.text();
    return key.isEmpty() ? tr("Property") : visibleText(key);
}

QVariant TavFindTableViewDataSource::data(const QModelIndex &index, int role) const
{
    const EntryRef entry = entryAtIndex(index.row());
    if (!entry)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return objectValueForTableColumn(index.column(), index.row());
    case OutlineRowDelegate::DetailRole:
        return index.column() == detailColumn() ? context_.detailForEntry(*entry) : QVariant();
    case Qt::FontRole:
    case Qt::ForegroundRole:
        return index.column() == NameColumn ? styleOf(*entry, role) : QVariant();
    case Qt::ToolTipRole:
        return plainToolTip(index.column() == NameColumn ? toolTipOf(*entry) : previewOf(*entry));
    case Qt::AccessibleTextRole:
        return index.column() == NameColumn ? context_.accessibleNameForEntry(
                                                  *entry, entry->nameAtLocationInPlane(QString()))
                                            : previewOf(*entry);
    default:
        return {};
    }
}

// The names leave little room, but without a property the second column is free.
int TavFindTableViewDataSource::detailColumn() const
{
    return findPreviewField_.text().isEmpty() ? PropertyColumn : NameColumn;
}

QVariant TavFindTableViewDataSource::styleOf(const TavRegistryEntry &entry, int role) const
{
    const auto &attributes = TavFormatController::textAttributesForRegistryState(
        entry.registryState(), FindStateNone, entry.isRegistryRoot());
    return role == Qt::FontRole ? EntryTextStyle::font(attributes)
                                : context_.colorForEntry(entry, attributes);
}
