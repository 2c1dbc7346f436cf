// SPDX-License-Identifier: Apache-2.0
#include "explorer/plots/PlotTable.h"

#include "explorer/plots/PlotPainter.h"
#include "platform/widgets/VisibleText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>

PlotTable::PlotTable(Plots &plots, QWidget *parent)
    : QTableWidget(parent)
    , plots_(plots)
{
    setObjectName(QStringLiteral("plotTable"));
    setAccessibleName(tr("Plotted values"));
    const QStringList titles{tr("Value"), tr("Per Second"), tr("Last"), tr("Minimum"),
                             tr("Mean"),  tr("Maximum"),    tr("Path")};
    setColumnCount(static_cast<int>(titles.size()));
    setHorizontalHeaderLabels(titles);
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setWordWrap(false);
    setContextMenuPolicy(Qt::CustomContextMenu);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    constexpr int widths[] = {26, 12, 14, 13, 13, 13, 24}; // characters
    for (int column = 0; column < columnCount(); ++column)
        setColumnWidth(column, widths[column] * fontMetrics().averageCharWidth());
    connect(&plots, &Plots::changed, this, &PlotTable::makeRows);
    connect(this, &QTableWidget::itemChanged, this, [this](const QTableWidgetItem *item) {
        if (item->column() == RateColumn)
            plots_.setReading(item->data(Qt::UserRole).toULongLong(),
                              item->checkState() == Qt::Checked ? PlotSeries::Reading::Rate
                                                                : PlotSeries::Reading::Value);
    });
    connect(this, &QWidget::customContextMenuRequested, this, &PlotTable::showMenu);
    makeRows();
}

void PlotTable::setRange(qint64 from, qint64 until)
{
    from_ = from;
    until_ = until;
    const QSignalBlocker blocker(this);
    int row = 0;
    for (const auto &line : plots_.lines())
        showAmounts(row++, *line);
}

void PlotTable::makeRows()
{
    const QSignalBlocker blocker(this);
    const int current = currentRow();
    setRowCount(static_cast<int>(plots_.lines().size()));
    int row = 0;
    for (const auto &line : plots_.lines()) {
        setCell(row, ValueColumn, visibleText(line->name + u' ' + line->value.text()));
        item(row, ValueColumn)->setIcon(swatch(*line));
        setCell(row, RateColumn, {});
        QTableWidgetItem *const rate = item(row, RateColumn);
        rate->setData(Qt::UserRole, line->number);
        rate->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        rate->setCheckState(line->reading == PlotSeries::Reading::Rate ? Qt::Checked
                                                                       : Qt::Unchecked);
        setCell(row, PathColumn, visibleText(line->path));
        item(row, PathColumn)->setToolTip(item(row, PathColumn)->text());
        showAmounts(row++, *line);
    }
    if (current < 0 && rowCount() > 0)
        setCurrentCell(0, ValueColumn);
}

void PlotTable::setCell(int row, int column, const QString &text)
{
    if (!item(row, column))
        setItem(row, column, new QTableWidgetItem);
    item(row, column)->setText(text);
}

QString PlotTable::stateText(PlotLine::State state)
{
    switch (state) {
    case PlotLine::State::Absent:
        return tr("not there now");
    case PlotLine::State::NotANumber:
        return tr("no longer a number");
    case PlotLine::State::NoAnswer:
        return tr("does not answer");
    default:
        return {};
    }
}

void PlotTable::showAmounts(int row, const PlotLine &line)
{
    const PlotUnit unit(line);
    const auto summary = line.series.summary(line.reading, from_, until_);
    const auto text = [&](double PlotSeries::Summary::*amount) {
        return summary ? unit.text((*summary).*amount) : QString();
    };
    const QString state = stateText(line.state);
    setCell(row, LastColumn, state.isNull() ? text(&PlotSeries::Summary::last) : state);
    setCell(row, MinColumn, text(&PlotSeries::Summary::minimum));
    setCell(row, MeanColumn, text(&PlotSeries::Summary::mean));
    setCell(row, MaxColumn, text(&PlotSeries::Summary::maximum));
}

QIcon PlotTable::swatch(const PlotLine &line) const
{
    constexpr int size = 12;
    QPixmap pixmap(QSize(size, size) * devicePixelRatioF());
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    pixmap.fill(PlotPainter::color(line, palette()));
    return pixmap;
}

void PlotTable::changeEvent(QEvent *event)
{
    QTableWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && columnCount() > 0)
        makeRows();
}

void PlotTable::keyPressEvent(QKeyEvent *event)
{
    const auto row = static_cast<std::size_t>(currentRow());
    const bool isOnRow = currentRow() >= 0 && row < plots_.lines().size();
    if (isOnRow && event->key() == Qt::Key_Delete)
        return plots_.remove(plots_.lines()[row]->number);
    if (isOnRow && (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter))
        return Q_EMIT entryChosen(plots_.lines()[row]->entryTag);
    if (isOnRow && event->key() == Qt::Key_Space) {
        QTableWidgetItem *const rate = item(currentRow(), RateColumn);
        return rate->setCheckState(rate->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    }
    if (isOnRow && event->matches(QKeySequence::Copy))
        return copyRow(currentRow());
    QTableWidget::keyPressEvent(event);
}

void PlotTable::copyRow(int row)
{
    QStringList texts;
    for (int column = 0; column < columnCount(); ++column)
        texts.append(item(row, column)->text());
    texts.removeAt(RateColumn);
    QGuiApplication::clipboard()->setText(texts.join(u'\t'));
}

void PlotTable::showMenu(const QPoint &place)
{
    const int row = rowAt(place.y());
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (row >= 0) {
        const PlotLine &line = *plots_.lines()[static_cast<std::size_t>(row)];
        menu->addAction(tr("&Go to Object"), this,
                        [this, tag = line.entryTag] { Q_EMIT entryChosen(tag); });
        menu->addAction(QIcon::fromTheme(QStringLiteral("edit-copy")), tr("&Copy Row"), this,
                        [this, row] { copyRow(row); });
        menu->addSeparator();
        menu->addAction(tr("&Remove"), this,
                        [this, number = line.number] { plots_.remove(number); });
    }
    menu->addAction(tr("Remove &All"), this, [this] { plots_.clear(); })
        ->setEnabled(!plots_.lines().empty());
    menu->popup(viewport()->mapToGlobal(place));
}
