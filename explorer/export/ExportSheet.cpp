// SPDX-License-Identifier: Apache-2.0
#include "explorer/export/ExportSheet.h"

#include "display/export/EscapedText.h"
#include "platform/desktop/InterfaceLoader.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

namespace {
using Scope = ExportRequest::Scope;
using Format = ExportRequest::Format;
using Fact = EntryFactTexts::Fact;

constexpr int columnRole = Qt::UserRole; // the number of a fact, or a key

bool isChosenAtFirst(Fact fact)
{
    return fact == Fact::Path || fact == Fact::Class || fact == Fact::Bundle;
}

template<class Choice>
QButtonGroup *group(QDialog &dialog, std::initializer_list<std::pair<const char *, Choice>> choices)
{
    auto *const buttons = new QButtonGroup(&dialog);
    for (const auto &[name, choice] : choices)
        buttons->addButton(InterfaceLoader::outlet<QRadioButton>(dialog, name),
                           static_cast<int>(choice));
    return buttons;
}
} // namespace

ExportSheet::ExportSheet(QWidget &window)
    : Sheet("ExportSheet", window)
    , scopes_(group<Scope>(dialog(), {{"exportEntryButton", Scope::Entry},
                                      {"exportSubtreeButton", Scope::Subtree},
                                      {"exportFoundButton", Scope::Found},
                                      {"exportPlaneButton", Scope::Plane}}))
    , formats_(group<Format>(dialog(), {{"exportTextButton", Format::Text},
                                        {"exportJsonButton", Format::Json},
                                        {"exportCsvButton", Format::Csv}}))
    , formatBox_(InterfaceLoader::outlet<QGroupBox>(dialog(), "exportFormatBox"))
    , columnsBox_(InterfaceLoader::outlet<QGroupBox>(dialog(), "exportColumnsBox"))
    , columnsList_(InterfaceLoader::outlet<QListWidget>(dialog(), "exportColumnsList"))
    , columnsFilter_(InterfaceLoader::outlet<QLineEdit>(dialog(), "exportColumnsFilter"))
    , redactedCheckbox_(InterfaceLoader::outlet<QCheckBox>(dialog(), "exportRedactedCheckbox"))
{
    connectButtons("exportCancelButton", "exportButton");
    for (const Fact fact : EntryFactTexts::all())
        addColumn(EntryFactTexts::title(fact), static_cast<int>(fact), isChosenAtFirst(fact));
    for (QButtonGroup *const buttons : {scopes_, formats_})
        connect(buttons, &QButtonGroup::idClicked, this, &ExportSheet::showColumns);
    connect(columnsFilter_, &QLineEdit::textChanged, this, &ExportSheet::filterColumns);
}

void ExportSheet::open(Purpose purpose, bool hasSelection, bool hasFound)
{
    purpose_ = purpose;
    const bool isForPrinter = purpose == Purpose::Printer;
    const bool canBe[] = {hasSelection, hasSelection, hasFound, true}; // by scope
    for (QAbstractButton *const button : scopes_->buttons())
        button->setEnabled(canBe[scopes_->id(button)]);
    const QAbstractButton *const chosen = scopes_->checkedButton();
    if (!chosen || !chosen->isEnabled())
        scopes_->button(static_cast<int>(hasSelection ? Scope::Subtree : Scope::Plane))
            ->setChecked(true);
    auto *const button = InterfaceLoader::outlet<QPushButton>(dialog(), "exportButton");
    dialog().setWindowTitle(isForPrinter ? tr("Print") : tr("Export"));
    button->setText(isForPrinter ? tr("Pr&int…") : tr("&Export…"));
    button->setAccessibleName(isForPrinter ? tr("Print") : tr("Export"));
    formatBox_->setVisible(!isForPrinter);
    showColumns();
    dialog().open();
    scopes_->checkedButton()->setFocus(Qt::OtherFocusReason);
}

Scope ExportSheet::scope() const
{
    return static_cast<Scope>(scopes_->checkedId());
}

Format ExportSheet::format() const
{
    return purpose_ == Purpose::Printer ? Format::Text : static_cast<Format>(formats_->checkedId());
}

void ExportSheet::showColumns()
{
    const bool isTable = format() == Format::Csv;
    columnsBox_->setVisible(isTable);
    if (isTable)
        Q_EMIT keysNeeded(scope());
    dialog().adjustSize();
}

// Replaces the keys and keeps the facts before them.
void ExportSheet::setKeys(const QStringList &keys)
{
    const CsvExport::Columns chosen = columns();
    chosenKeys_.unite(QSet<QString>(chosen.keys.begin(), chosen.keys.end()));
    const int facts = static_cast<int>(EntryFactTexts::all().size());
    while (columnsList_->count() > facts)
        delete columnsList_->takeItem(columnsList_->count() - 1);
    for (const QString &key : keys)
        addColumn(escapedText(key), key, chosenKeys_.contains(key));
    filterColumns(columnsFilter_->text());
}

void ExportSheet::addColumn(const QString &title, const QVariant &column, bool isChosen)
{
    auto *const item = new QListWidgetItem(title, columnsList_);
    item->setData(columnRole, column);
    item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    item->setCheckState(isChosen ? Qt::Checked : Qt::Unchecked);
}

void ExportSheet::filterColumns(const QString &text)
{
    for (int i = 0; i < columnsList_->count(); ++i) {
        QListWidgetItem *const item = columnsList_->item(i);
        item->setHidden(!item->text().contains(text, Qt::CaseInsensitive));
    }
}

CsvExport::Columns ExportSheet::columns() const
{
    CsvExport::Columns columns;
    for (int i = 0; i < columnsList_->count(); ++i) {
        const QListWidgetItem *const item = columnsList_->item(i);
        const QVariant column = item->data(columnRole);
        if (item->checkState() != Qt::Checked)
            continue;
        if (column.typeId() == QMetaType::Int)
            columns.facts.push_back(static_cast<Fact>(column.toInt()));
        else
            columns.keys.append(column.toString());
    }
    return columns;
}

void ExportSheet::report()
{
    Q_EMIT requested({scope(), format(), columns(), redactedCheckbox_->isChecked()}, purpose_);
}
