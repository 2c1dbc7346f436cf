// SPDX-License-Identifier: Apache-2.0
#include "explorer/plots/PlotsDock.h"

#include "display/activity/PlotCsv.h"
#include "explorer/plots/PlotImage.h"
#include "explorer/plots/PlotTable.h"
#include "explorer/plots/PlotView.h"
#include "platform/widgets/BarButton.h"
#include "platform/widgets/SaveDialog.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileInfo>
#include <QSplitter>
#include <QToolButton>

namespace {
constexpr qint64 minute = 60LL * 1'000'000;
constexpr qint64 spans[] = {minute, 10 * minute, 60 * minute, 6 * 60 * minute, 24 * 60 * minute};
} // namespace

PlotsDock::PlotsDock(Plots &plots, QWidget *parent)
    : QDockWidget(tr("Plots"), parent)
    , plots_(plots)
    , view_(new PlotView(plots))
    , table_(new PlotTable(plots))
    , splitter_(new QSplitter)
    , pause_(barButton(tr("Pause"), "media-playback-pause", "plotsPauseButton"))
    , toNow_(barButton(tr("Now"), "go-last", "plotsNowButton"))
    , spans_(new QComboBox)
{
    setObjectName(QStringLiteral("plotsDock"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    auto *const content = new QWidget;
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(makeBar());
    splitter_->addWidget(view_);
    splitter_->addWidget(table_);
    splitter_->setChildrenCollapsible(false);
    layout->addWidget(splitter_, 1);
    setWidget(content);
    connect(view_, &PlotView::rangeChanged, this, &PlotsDock::showRange);
    connect(table_, &PlotTable::entryChosen, this, &PlotsDock::entryChosen);
    connect(&plots, &Plots::changed, this, &PlotsDock::showRange);
    connect(&plots, &Plots::sampled, this, [this] {
        if (isVisible() && view_->followsNow() && !isWindowPaused_ && !pause_->isChecked())
            showRange();
    });
    showRange();
}

QWidget *PlotsDock::makeBar()
{
    auto *const bar = new QWidget;
    auto *const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 2, 4, 0);
    spans_->setObjectName(QStringLiteral("plotsSpan"));
    spans_->setAccessibleName(tr("Time that is shown"));
    spans_->addItems({tr("1 Minute"), tr("10 Minutes"), tr("1 Hour"), tr("6 Hours"), tr("1 Day")});
    connect(spans_, &QComboBox::activated, this, &PlotsDock::chooseSpan);
    pause_->setCheckable(true);
    connect(pause_, &QToolButton::toggled, this, &PlotsDock::updatePause);
    connect(toNow_, &QToolButton::clicked, view_, &PlotView::goToNow);
    auto *const saveButton = barButton(tr("Save As…"), "document-save-as", "plotsSaveButton");
    connect(saveButton, &QToolButton::clicked, this, &PlotsDock::saveAs);
    layout->addWidget(spans_);
    for (QWidget *const button : {pause_, toNow_, saveButton})
        layout->addWidget(button);
    layout->addStretch(1);
    return bar;
}

// Side by side while there is room for both.
void PlotsDock::resizeEvent(QResizeEvent *event)
{
    constexpr int characters = 130;
    splitter_->setOrientation(
        width() > characters * fontMetrics().averageCharWidth() ? Qt::Horizontal : Qt::Vertical);
    QDockWidget::resizeEvent(event);
}

void PlotsDock::showEvent(QShowEvent *event)
{
    QDockWidget::showEvent(event);
    showRange();
}

void PlotsDock::setPaused(bool paused)
{
    isWindowPaused_ = paused;
    updatePause();
}

void PlotsDock::updatePause()
{
    view_->setPaused(isWindowPaused_ || pause_->isChecked());
}

void PlotsDock::showRange()
{
    table_->setRange(view_->from(), view_->until());
    toNow_->setEnabled(!view_->followsNow());
    const auto *const found = std::find(std::begin(spans), std::end(spans), view_->span());
    spans_->setCurrentIndex(found == std::end(spans) ? -1
                                                     : static_cast<int>(found - std::begin(spans)));
    spans_->setPlaceholderText(tr("Zoomed"));
}

void PlotsDock::chooseSpan(int index)
{
    view_->setSpan(spans[index]);
}

void PlotsDock::saveAs()
{
    SaveDialog::open(*this, tr("Save Plots"), tr("plots"),
                     {{tr("PNG picture (*.png)"), QStringLiteral("png")},
                      {tr("SVG picture (*.svg)"), QStringLiteral("svg")},
                      {tr("Comma-separated values (*.csv)"), QStringLiteral("csv")}},
                     [this](const QString &file) { save(file); });
}

void PlotsDock::save(const QString &file)
{
    SaveDialog::write(*this, file, [&](QIODevice &device) { return write(file, device); });
}

bool PlotsDock::write(const QString &file, QIODevice &device) const
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    if (suffix == QLatin1String("csv"))
        return PlotCsv::write(plots_, device);
    const auto format =
        suffix == QLatin1String("svg") ? PlotImage::Format::Svg : PlotImage::Format::Png;
    return PlotImage::write(plots_.lines(), view_->from(), view_->until(), format, device);
}
