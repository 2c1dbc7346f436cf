// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/FindingsDock.h"

#include "checks/CheckList.h"
#include "explorer/DateText.h"
#include "explorer/findings/DocumentFindings.h"
#include "explorer/findings/FindingsModel.h"
#include "platform/widgets/BarButton.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/RowTable.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/ViewNote.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTableView>
#include <QTextBrowser>
#include <QToolButton>

FindingsDock::FindingsDock(DocumentFindings &findings, std::shared_ptr<TavDataStore> store,
                           QWidget *parent)
    : QDockWidget(tr("Findings"), parent)
    , findings_(findings)
    , model_(std::make_unique<FindingsModel>(findings, std::move(store)))
    , shown_(new QSortFilterProxyModel(this))
    , table_(new QTableView)
    , explanation_(new QTextBrowser)
    , filterField_(new SearchField)
    , showHiddenButton_(barButton(tr("Show Hidden"), "view-visible", "findingsShowHiddenButton"))
    , measureButton_(
          barButton(tr("Measure Too"), "utilities-system-monitor", "findingsMeasureButton"))
    , notes_(new QLabel)
{
    setObjectName(QStringLiteral("findingsDock"));
    setAllowedAreas(Qt::BottomDockWidgetArea | Qt::TopDockWidgetArea);
    auto *const content = new QWidget;
    auto *const layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(makeBar());
    auto *const splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(table_);
    splitter->addWidget(explanation_);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    layout->addWidget(splitter, 1);
    setWidget(content);
    setUpTable();
    explanation_->setObjectName(QStringLiteral("findingExplanation"));
    explanation_->setAccessibleName(tr("Explanation"));
    explanation_->setOpenLinks(false);
    connect(explanation_, &QTextBrowser::anchorClicked, this, [this](const QUrl &link) {
        if (const int row = currentRow(); row >= 0)
            Q_EMIT propertyChosen(model_->finding(row).entryTag, link.toString(QUrl::FullyDecoded));
    });
    auto *const nothing = new ViewNote(tr("Nothing looks wrong."), *table_);
    const auto update = [this, nothing] {
        nothing->setVisible(model_->rowCount() == 0);
        selectAgain();
        updateBar();
    };
    connect(model_.get(), &QAbstractItemModel::modelAboutToBeReset, this, [this] {
        if (const int row = currentRow(); row >= 0)
            selected_ = model_->finding(row);
    });
    connect(model_.get(), &QAbstractItemModel::modelReset, this, update);
    connect(&findings, &DocumentFindings::checked, this, &FindingsDock::updateBar);
    update();
}

FindingsDock::~FindingsDock()
{
    delete widget(); // its views use the model
}

QWidget *FindingsDock::makeBar()
{
    auto *const bar = new QWidget;
    auto *const layout = new QHBoxLayout(bar);
    layout->setContentsMargins(4, 2, 4, 0);
    filterField_->setObjectName(QStringLiteral("findingsFilterField"));
    filterField_->setPlaceholderText(tr("Filter by a text"));
    filterField_->setAccessibleName(tr("Filter of the findings"));
    filterField_->setClearButtonEnabled(true);
    nameClearButton(*filterField_);
    const auto filter = [this] { shown_->setFilterFixedString(filterField_->text()); };
    connect(filterField_, &SearchField::searchRequested, this, filter);
    connect(filterField_, &SearchField::cancelled, this, filter);
    auto *const hideButton =
        barButton(tr("Do Not Show Again"), "view-hidden", "findingsHideButton");
    connect(hideButton, &QToolButton::clicked, this, [this, hideButton] {
        makeHidingMenu()->popup(hideButton->mapToGlobal(hideButton->rect().bottomLeft()));
    });
    showHiddenButton_->setCheckable(true);
    showHiddenButton_->setToolTip(tr("Shows the findings that are not to be shown again, too"));
    connect(showHiddenButton_, &QToolButton::toggled, model_.get(), &FindingsModel::setShowsHidden);
    measureButton_->setToolTip(tr("Also reads sensors, fans, batteries and rising counters, once"));
    connect(measureButton_, &QToolButton::clicked, &findings_, &DocumentFindings::measure);
    notes_->setObjectName(QStringLiteral("findingsNotes"));
    auto *const copyButton = barButton(tr("Copy"), "edit-copy", "findingsCopyButton");
    connect(copyButton, &QToolButton::clicked, this, &FindingsDock::copy);
    layout->addWidget(filterField_);
    for (QWidget *const button : {copyButton, hideButton, showHiddenButton_, measureButton_})
        layout->addWidget(button);
    layout->addStretch(1);
    layout->addWidget(notes_);
    return bar;
}

void FindingsDock::updateBar()
{
    const bool areSomeHidden = !findings_.hidden().isEmpty();
    showHiddenButton_->setVisible(areSomeHidden || showHiddenButton_->isChecked());
    measureButton_->setEnabled(findings_.canMeasure());
    QStringList notes;
    if (!findings_.failedChecks().isEmpty())
        notes.append(
            tr("Checks that gave up: %1").arg(findings_.failedChecks().join(QLatin1String(", "))));
    if (const QDateTime &date = findings_.dateMeasured(); !date.isNull())
        notes.append(tr("Measured at %1").arg(DateText::mediumTime(date)));
    notes_->setText(notes.join(QStringLiteral(" · ")));
}

// The same finding as before, or the worst.
void FindingsDock::selectAgain()
{
    const int row = selected_ ? model_->rowOf(*selected_) : -1;
    const QModelIndex index = shown_->mapFromSource(model_->index(row, 0));
    if (shown_->rowCount() > 0)
        table_->selectRow(index.isValid() ? index.row() : 0);
    explain();
}

QMenu *FindingsDock::makeMenu()
{
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool isChosen = currentRow() >= 0;
    menu->addAction(tr("&Go to Entry"), this, &FindingsDock::choose)->setEnabled(isChosen);
    menu->addAction(tr("&Copy"), this, &FindingsDock::copy)->setEnabled(isChosen);
    menu->addSeparator();
    addHidingActions(*menu);
    return menu;
}

QMenu *FindingsDock::makeHidingMenu()
{
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("findingsHidingMenu"));
    addHidingActions(*menu);
    return menu;
}

void FindingsDock::addHidingActions(QMenu &menu)
{
    HiddenFindings &hidden = findings_.hidden();
    const int row = currentRow();
    const HiddenFindings::Place place = row >= 0 ? placeOf(row) : HiddenFindings::Place();
    const auto add = [&](const QString &title, const HiddenFindings::Place &rule) {
        menu.addAction(title, this, [&hidden, rule] { hidden.hide(rule); })->setEnabled(row >= 0);
    };
    if (row >= 0 && model_->isHidden(row)) {
        menu.addAction(tr("&Show This Finding Again"), this,
                       [&hidden, place] { hidden.show(place); });
    } else {
        add(tr("Do Not Show This &Finding Again"), place);
        add(tr("Do Not Show Findings of This &Kind Again"), place.ofCheck());
        add(tr("Do Not Show Findings of This &Device Again"), place.ofDevice());
    }
    menu.addAction(tr("Show &Everything Again"), &hidden, &HiddenFindings::showAll)
        ->setEnabled(!hidden.isEmpty());
}

HiddenFindings::Place FindingsDock::placeOf(int row) const
{
    return findings_.placeOf(model_->finding(row));
}

void FindingsDock::setUpTable()
{
    shown_->setSourceModel(model_.get());
    shown_->setFilterKeyColumn(-1);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    table_->setObjectName(QStringLiteral("findingsTable"));
    table_->setAccessibleName(tr("Findings"));
    table_->setModel(shown_);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    constexpr int widths[] = {14, 44, 18, 34, 30};
    makeRowTable(*table_, widths);
    connect(table_, &QTableView::customContextMenuRequested, this,
            [this](QPoint place) { makeMenu()->popup(table_->viewport()->mapToGlobal(place)); });
    table_->installEventFilter(this);
    connect(table_, &QTableView::doubleClicked, this, &FindingsDock::choose);
    connect(table_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &FindingsDock::explain);
}

bool FindingsDock::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == table_ && event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent *>(event)->matches(QKeySequence::Copy))
        event->accept(); // before the window's command
    if (watched == table_ && event->type() == QEvent::KeyPress) {
        const auto &key = *static_cast<QKeyEvent *>(event);
        if (key.matches(QKeySequence::Copy)) {
            copy();
            return true;
        }
        if (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
            choose();
            return true;
        }
    }
    return QDockWidget::eventFilter(watched, event);
}

int FindingsDock::currentRow() const
{
    const QModelIndex index = shown_->mapToSource(table_->currentIndex());
    return index.isValid() ? index.row() : -1;
}

void FindingsDock::choose()
{
    if (const int row = currentRow(); row >= 0)
        Q_EMIT entryChosen(model_->finding(row).entryTag);
}

void FindingsDock::copy()
{
    if (const int row = currentRow(); row >= 0)
        QGuiApplication::clipboard()->setText(model_->plainText(row));
}

void FindingsDock::explain()
{
    const int row = currentRow();
    if (row < 0)
        return explanation_->clear();
    const Finding &finding = model_->finding(row);
    const CheckDescription &check = CheckList::describe(finding.check);
    const auto paragraph = [](const QString &title, const QString &text) {
        return text.isEmpty() ? QString() : QStringLiteral("<p><b>%1</b> %2</p>").arg(title, text);
    };
    QStringList links;
    for (const QString &property : finding.properties)
        links.append(QStringLiteral("<a href=\"%1\">%1</a>").arg(property.toHtmlEscaped()));
    explanation_->setHtml(
        QStringLiteral("<p><b>%1</b></p>").arg(check.title.toHtmlEscaped()) +
        paragraph(QString(), finding.detail.toHtmlEscaped()) +
        QStringLiteral("<p>%1</p>").arg(check.explanation.toHtmlEscaped()) +
        paragraph(tr("What to do:"), finding.nextStep.toHtmlEscaped()) +
        paragraph(tr("Properties:"), links.join(QLatin1String(", "))) +
        paragraph(tr("Read more:"), check.reading.join(QLatin1String(", ")).toHtmlEscaped()));
}
