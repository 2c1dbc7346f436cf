// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/FindingsDock.h"

#include "checks/CheckList.h"
#include "explorer/findings/DocumentFindings.h"
#include "explorer/findings/FindingsModel.h"
#include "platform/widgets/BarButton.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/ViewNote.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTableView>
#include <QTextBrowser>
#include <QToolButton>

FindingsDock::FindingsDock(const DocumentFindings &findings, std::shared_ptr<TavDataStore> store,
                           QWidget *parent)
    : QDockWidget(tr("Findings"), parent)
    , model_(std::make_unique<FindingsModel>(findings, std::move(store)))
    , shown_(new QSortFilterProxyModel(this))
    , table_(new QTableView)
    , explanation_(new QTextBrowser)
    , filterField_(new SearchField)
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
        if (!table_->currentIndex().isValid() && shown_->rowCount() > 0)
            table_->selectRow(0);
        explain();
    };
    connect(model_.get(), &QAbstractItemModel::modelReset, this, update);
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
    auto *const copyButton = barButton(tr("Copy"), "edit-copy", "findingsCopyButton");
    connect(copyButton, &QToolButton::clicked, this, &FindingsDock::copy);
    layout->addWidget(filterField_);
    layout->addWidget(copyButton);
    layout->addStretch(1);
    return bar;
}

void FindingsDock::setUpTable()
{
    shown_->setSourceModel(model_.get());
    shown_->setFilterKeyColumn(-1);
    shown_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    table_->setObjectName(QStringLiteral("findingsTable"));
    table_->setAccessibleName(tr("Findings"));
    table_->setModel(shown_);
    table_->setShowGrid(false);
    table_->setAlternatingRowColors(true);
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setTabKeyNavigation(false);
    table_->setWordWrap(false);
    table_->verticalHeader()->hide();
    table_->verticalHeader()->setDefaultSectionSize(table_->fontMetrics().height() + 6);
    QHeaderView *const header = table_->horizontalHeader();
    header->setHighlightSections(false);
    header->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    header->setStretchLastSection(true);
    constexpr int widths[] = {10, 44, 18, 30, 30}; // characters
    for (int column = 0; column < FindingsModel::columns; ++column)
        header->resizeSection(column, widths[column] * table_->fontMetrics().averageCharWidth());
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
    const CheckDescription check = CheckList::withID(finding.check)->description();
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
        paragraph(tr("What to do:"), check.nextStep.toHtmlEscaped()) +
        paragraph(tr("Properties:"), links.join(QLatin1String(", "))) +
        paragraph(tr("Read more:"), check.reading.join(QLatin1String(", ")).toHtmlEscaped()));
}
