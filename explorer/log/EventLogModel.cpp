// SPDX-License-Identifier: Apache-2.0
#include "explorer/log/EventLogModel.h"

#include "display/activity/EventWords.h"
#include "display/views/EntryColors.h"
#include "platform/widgets/PlainToolTip.h"
#include "platform/widgets/ReadableColor.h"
#include "platform/widgets/VisibleText.h"

#include <QDateTime>
#include <QGuiApplication>

namespace {
constexpr int betweenUpdates = 100; // milliseconds
constexpr qsizetype shownCharacters = 300;

QString cut(const QString &text)
{
    return text.size() > shownCharacters ? text.left(shownCharacters) + QChar(u'…') : text;
}
} // namespace

EventLogModel::EventLogModel(EventLog &log, std::shared_ptr<TavDataStore> store)
    : log_(log)
    , filter_(std::move(store))
{
    timer_.setSingleShot(true);
    timer_.setInterval(betweenUpdates);
    connect(&timer_, &QTimer::timeout, this, &EventLogModel::catchUp);
    connect(&log, &EventLog::changed, this, [this] {
        if (isShown_ && !timer_.isActive())
            timer_.start();
    });
    connect(&log, &EventLog::replaced, this, [this](quint64 number) {
        if (isShown_ && number < next_)
            replaced_.insert(number);
    });
}

void EventLogModel::setFilter(std::optional<FilterExpression> expression)
{
    beginResetModel();
    filter_.set(std::move(expression));
    numbers_.clear();
    replaced_.clear();
    const quint64 end = std::max(next_, log_.firstNumber());
    for (quint64 number = log_.firstNumber(); isShown_ && number < end; ++number) {
        if (filter_.passes(log_.row(number)))
            numbers_.push_back(number);
    }
    next_ = end;
    endResetModel();
    catchUp();
}

void EventLogModel::setPaused(bool paused)
{
    isPaused_ = paused;
    catchUp();
}

void EventLogModel::setShown(bool shown)
{
    if (shown == isShown_)
        return;
    isShown_ = shown;
    beginResetModel();
    numbers_.clear();
    replaced_.clear();
    next_ = log_.firstNumber();
    endResetModel();
    if (!shown)
        return;
    filter_.refresh();
    const bool wasPaused = std::exchange(isPaused_, false);
    catchUp();
    isPaused_ = wasPaused;
}

quint64 EventLogModel::waiting() const
{
    return isPaused_ ? log_.endNumber() - std::max(next_, log_.firstNumber()) : 0;
}

quint64 EventLogModel::hidden() const
{
    const quint64 seen = std::max(next_, log_.firstNumber()) - log_.firstNumber();
    return seen - std::min<quint64>(seen, numbers_.size());
}

// What was dropped goes even during a pause: nothing is known of it any more.
void EventLogModel::catchUp()
{
    if (!isShown_)
        return;
    removeDropped();
    if (!isPaused_) {
        filter_.refresh();
        showReplaced();
        appendNew();
    }
    Q_EMIT caughtUp();
}

void EventLogModel::removeDropped()
{
    const auto kept = std::lower_bound(numbers_.begin(), numbers_.end(), log_.firstNumber());
    if (kept != numbers_.begin()) {
        beginRemoveRows({}, 0, static_cast<int>(kept - numbers_.begin()) - 1);
        numbers_.erase(numbers_.begin(), kept);
        endRemoveRows();
    }
    next_ = std::max(next_, log_.firstNumber());
}

// With what is known now, a row may pass the filter that did not, or the other way round.
void EventLogModel::showReplaced()
{
    for (const quint64 number : std::exchange(replaced_, {})) {
        if (number < log_.firstNumber())
            continue;
        const auto place = std::lower_bound(numbers_.begin(), numbers_.end(), number);
        const auto row = static_cast<int>(place - numbers_.begin());
        const bool wasShown = place != numbers_.end() && *place == number;
        const bool isShown = filter_.passes(log_.row(number));
        if (wasShown && isShown) {
            Q_EMIT dataChanged(index(row, 0), index(row, columns - 1));
        } else if (wasShown) {
            beginRemoveRows({}, row, row);
            numbers_.erase(place);
            endRemoveRows();
        } else if (isShown) {
            beginInsertRows({}, row, row);
            numbers_.insert(place, number);
            endInsertRows();
        }
    }
}

void EventLogModel::appendNew()
{
    std::vector<quint64> fresh;
    for (; next_ < log_.endNumber(); ++next_) {
        if (filter_.passes(log_.row(next_)))
            fresh.push_back(next_);
    }
    if (fresh.empty())
        return;
    const auto first = static_cast<int>(numbers_.size());
    beginInsertRows({}, first, first + static_cast<int>(fresh.size()) - 1);
    numbers_.insert(numbers_.end(), fresh.begin(), fresh.end());
    endInsertRows();
}

int EventLogModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(numbers_.size());
}

int EventLogModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : columns;
}

QVariant EventLogModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || number(index.row()) < log_.firstNumber())
        return {};
    const LogRow &row = logRow(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return cut(visibleText(text(row, index.column())));
    case Qt::ToolTipRole:
        return plainToolTip(toolTip(row));
    case Qt::ForegroundRole:
        return index.column() == EventColumn || index.column() == EntryColumn ? color(row)
                                                                              : QVariant();
    case Qt::TextAlignmentRole:
        return index.column() == NumberColumn ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
                                              : QVariant();
    case Qt::AccessibleTextRole:
        return index.column() == TimeColumn ? QVariant(toolTip(row)) : QVariant();
    default:
        return {};
    }
}

QString EventLogModel::text(const LogRow &row, int column)
{
    switch (column) {
    case TimeColumn:
        return EventWords::time(row.event);
    case EventColumn:
        return EventWords::word(row.event.kind);
    case EntryColumn:
        return row.name;
    case PathColumn:
        return EventWords::path(row);
    case ClassColumn:
        return row.className();
    case DriverColumn:
        return row.driver;
    case ChangesColumn:
        return EventWords::changes(row);
    case NumberColumn:
        return row.event.sequence == 0 ? QString() : QString::number(row.event.sequence);
    default:
        return {};
    }
}

QString EventLogModel::toolTip(const LogRow &row)
{
    QStringList lines{
        QStringLiteral("%1  %2 %3")
            .arg(EventWords::time(row.event), row.name, EventWords::word(row.event.kind))
            .simplified()};
    for (const QString &line : {EventWords::path(row), EventWords::detail(row)}) {
        if (!line.isEmpty())
            lines.append(line);
    }
    for (const LogChange &change : row.changes)
        lines.append(cut(EventWords::change(change)));
    return lines.join(u'\n');
}

QVariant EventLogModel::color(const LogRow &row)
{
    using Kind = RegistryEvent::Kind;
    const auto readable = [](const QColor &color) {
        return readableColor(color, QGuiApplication::palette());
    };
    switch (row.event.kind) {
    case Kind::Appeared:
        return readable(EntryColors::colorForNewItem());
    case Kind::Gone:
        return readable(EntryColors::colorForTerminatedItem());
    case Kind::Lost:
        return readable(EntryColors::colorForChangedItem());
    default:
        return {};
    }
}

QVariant EventLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case EventColumn:
        return tr("Event");
    case EntryColumn:
        return tr("Object");
    case PathColumn:
        return tr("Path");
    case ClassColumn:
        return tr("Class");
    case DriverColumn:
        return tr("Driver");
    case ChangesColumn:
        return tr("Changes");
    case NumberColumn:
        return tr("Number");
    default:
        return {};
    }
}
