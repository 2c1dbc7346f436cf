// SPDX-License-Identifier: Apache-2.0
#include "explorer/log/EventLogDock.h"

#include "display/activity/EventWords.h"
#include "explorer/find/FilterCompleter.h"
#include "explorer/log/EventLogModel.h"
#include "platform/widgets/BarButton.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/FieldNote.h"
#include "platform/widgets/RowTable.h"
#include "platform/widgets/SaveDialog.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/TextMark.h"
#include "platform/widgets/VisibleText.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QFileInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QScrollBar>
#include <QTableView>
#include <QToolButton>

EventLogDock::EventLogDock(EventLog &log, std::shared_ptr<TavDataStore> store, QWidget *parent)
    : QDockWidget(tr("Log"), parent)
    , log_(log)
    , model_(std::make_unique<EventLogModel>(log, store))
    , table_(new QTableView)
    , filterField_(new SearchField)
    , pause_(barButton(tr("Pause"), "media-playback-pause", "logPauseButton"))
    , counts_(new QLabel)
{
    setObjectName(QStringLiteral("logDock"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    auto *const content = new QWidget;
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(makeBar(store));
    layout->addWidget(table_, 1);
    setWidget(content);
    note_ = new FieldNote(*filterField_);
    setUpTable();
    connect(model_.get(), &EventLogModel::caughtUp, this, [this] {
        if (isAtEnd_)
            table_->scrollToBottom();
        showCounts();
    });
    showCounts();
}

EventLogDock::~EventLogDock()
{
    delete widget(); // its views use the model
}

QWidget *EventLogDock::makeBar(const std::shared_ptr<TavDataStore> &store)
{
    auto *const bar = new QWidget;
    auto *const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 2, 4, 0);
    filterField_->setObjectName(QStringLiteral("logFilterField"));
    filterField_->setMinimumWidth(24 * filterField_->fontMetrics().averageCharWidth());
    filterField_->setPlaceholderText(tr("Filter by an expression"));
    filterField_->setAccessibleName(tr("Filter of the log"));
    filterField_->setClearButtonEnabled(true);
    nameClearButton(*filterField_);
    (new FilterCompleter(*filterField_, store))->setOn(true);
    connect(filterField_, &SearchField::searchRequested, this, &EventLogDock::applyFilter);
    connect(filterField_, &SearchField::cancelled, this, [this] {
        applyFilter();
        table_->setFocus();
    });
    pause_->setCheckable(true);
    connect(pause_, &QToolButton::toggled, this, &EventLogDock::updatePause);
    auto *const clearButton = barButton(tr("Clear"), "edit-clear", "logClearButton");
    connect(clearButton, &QToolButton::clicked, this, &EventLogDock::clear);
    auto *const saveButton = barButton(tr("Save As…"), "document-save-as", "logSaveButton");
    connect(saveButton, &QToolButton::clicked, this, &EventLogDock::saveAs);
    counts_->setObjectName(QStringLiteral("logCounts"));
    layout->addWidget(filterField_);
    for (QWidget *const button : {pause_, clearButton, saveButton})
        layout->addWidget(button);
    layout->addStretch(1);
    layout->addWidget(counts_);
    return bar;
}

void EventLogDock::setUpTable()
{
    table_->setObjectName(QStringLiteral("logTable"));
    table_->setAccessibleName(tr("Log of events"));
    table_->setModel(model_.get());
    constexpr int widths[] = {15, 15, 18, 36, 18, 14, 48, 10};
    makeRowTable(*table_, widths);
    QHeaderView *const header = table_->horizontalHeader();
    header->moveSection(EventLogModel::NumberColumn, EventLogModel::ChangesColumn);
    table_->hideColumn(EventLogModel::NumberColumn);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QHeaderView::customContextMenuRequested, this, [this, header](QPoint place) {
        auto *const menu = new QMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        for (int column = 0; column < EventLogModel::columns; ++column) {
            QAction *const item = menu->addAction(
                model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString());
            item->setCheckable(true);
            item->setChecked(!header->isSectionHidden(column));
            connect(item, &QAction::toggled, header,
                    [header, column](bool on) { header->setSectionHidden(column, !on); });
        }
        menu->popup(header->mapToGlobal(place));
    });
    table_->installEventFilter(this);
    connect(table_, &QTableView::customContextMenuRequested, this, &EventLogDock::showMenu);
    connect(table_, &QTableView::clicked, this, &EventLogDock::choose);
    connect(table_, &QTableView::activated, this, &EventLogDock::choose);
    const QScrollBar *const bar = table_->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this,
            [this, bar](int value) { isAtEnd_ = value >= bar->maximum(); });
}

bool EventLogDock::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == table_ && event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy))
        event->accept(); // before the window's command
    if (watched == table_ && event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (key.matches(QKeySequence::Copy)) {
            copyRows();
            return true;
        }
        if (key.key() == Qt::Key_Escape && !filterField_->text().isEmpty()) {
            filterField_->cancelSearch();
            return true;
        }
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
            choose(table_->currentIndex());
            return true;
        }
    }
    return QDockWidget::eventFilter(watched, event);
}

void EventLogDock::showEvent(QShowEvent *event)
{
    model_->setShown(true);
    QDockWidget::showEvent(event);
}

void EventLogDock::hideEvent(QHideEvent *event)
{
    model_->setShown(false);
    QDockWidget::hideEvent(event);
}

void EventLogDock::setPaused(bool paused)
{
    isWindowPaused_ = paused;
    updatePause();
}

void EventLogDock::updatePause()
{
    model_->setPaused(isWindowPaused_ || pause_->isChecked());
    showCounts();
}

void EventLogDock::applyFilter()
{
    const QString text = filterField_->text();
    if (text.trimmed().isEmpty()) {
        note_->setNote({});
        markText(*filterField_, 0, 0);
        return model_->setFilter(std::nullopt);
    }
    auto expression = FilterExpression::parse(text);
    const FilterError error = expression ? FilterError() : expression.error();
    note_->setNote(expression ? QString() : visibleText(error.message));
    markText(*filterField_, expression ? 0 : error.position, expression ? 0 : error.length);
    if (expression)
        model_->setFilter(*expression);
}

void EventLogDock::showCounts()
{
    QStringList texts;
    const auto add = [&](quint64 count, const QString &text) {
        if (count > 0)
            texts.append(text.arg(count));
    };
    const auto shown = static_cast<quint64>(model_->rowCount());
    texts.append(shown == 1 ? tr("1 event") : tr("%1 events").arg(shown));
    add(model_->hidden(), tr("%1 filtered out"));
    add(log_.dropped(), tr("%1 oldest dropped"));
    add(log_.lost(), tr("%1 lost by the kernel"));
    add(model_->waiting(), tr("%1 waiting"));
    counts_->setText(texts.join(QStringLiteral(" · ")));
}

void EventLogDock::choose(const QModelIndex &index)
{
    if (index.isValid() && table_->selectionModel()->selectedRows().size() == 1)
        Q_EMIT entryChosen(model_->logRow(index.row()).entryTag);
}

std::vector<quint64> EventLogDock::selectedNumbers() const
{
    std::vector<quint64> numbers;
    for (const QModelIndex &index : table_->selectionModel()->selectedRows())
        numbers.push_back(model_->number(index.row()));
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

std::vector<quint64> EventLogDock::numbersToSave() const
{
    std::vector<quint64> numbers = selectedNumbers();
    if (numbers.size() > 1)
        return numbers;
    numbers.clear();
    for (int row = 0; row < model_->rowCount(); ++row)
        numbers.push_back(model_->number(row));
    return numbers;
}

void EventLogDock::showMenu(const QPoint &place)
{
    const QModelIndex index = table_->indexAt(place);
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString &text, bool isEnabled, auto action) {
        menu->addAction(text, this, action)->setEnabled(isEnabled);
    };
    add(tr("&Go to Object"), index.isValid(), [this] { choose(table_->currentIndex()); });
    menu->addSeparator();
    add(tr("&Copy"), index.isValid(), [this] { copyRows(); });
    add(tr("Copy &Path"), index.isValid(), [this] { copyPath(); });
    menu->addSeparator();
    add(tr("Save &As…"), true, [this] { saveAs(); });
    add(tr("C&lear"), true, [this] { clear(); });
    menu->popup(table_->viewport()->mapToGlobal(place));
}

void EventLogDock::copyRows()
{
    QStringList lines;
    for (const quint64 number : selectedNumbers()) {
        if (number >= log_.firstNumber())
            lines.append(LogExport::text(log_.row(number)));
    }
    if (!lines.isEmpty())
        QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void EventLogDock::copyPath()
{
    const QModelIndex index = table_->currentIndex();
    if (index.isValid())
        QGuiApplication::clipboard()->setText(EventWords::path(model_->logRow(index.row())));
}

void EventLogDock::clear()
{
    log_.clear();
    model_->catchUp();
}

void EventLogDock::saveAs()
{
    SaveDialog::open(
        *this, tr("Save Log"), tr("log"),
        {{tr("Text (*.txt)"), QStringLiteral("txt")},
         {tr("Comma-separated values (*.csv)"), QStringLiteral("csv")},
         {tr("JSON lines (*.ndjson)"), QStringLiteral("ndjson")}},
        [this, numbers = numbersToSave()](const QString &file) { save(file, numbers); });
}

void EventLogDock::save(const QString &file, const std::vector<quint64> &numbers)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    const Format format = suffix == QLatin1String("csv")      ? Format::Csv
                          : suffix == QLatin1String("ndjson") ? Format::Ndjson
                                                              : Format::Text;
    SaveDialog::write(*this, file, [&](QIODevice &device) {
        return LogExport::write(log_, numbers, format, device);
    });
}
