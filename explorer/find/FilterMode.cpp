// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FilterMode.h"

#include "explorer/find/FilterCompleter.h"
#include "explorer/find/SavedFiltersMenu.h"
#include "explorer/find/StoredFilters.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FieldNote.h"
#include "platform/widgets/MenuText.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/TextMark.h"
#include "platform/widgets/VisibleText.h"

#include <QAction>
#include <QActionGroup>
#include <QInputDialog>
#include <QMainWindow>
#include <QMenu>
#include <QToolButton>

namespace {
constexpr int expressionLength = 60; // characters to have in sight

std::optional<FilterError> errorIn(const QString &text)
{
    if (text.trimmed().isEmpty())
        return std::nullopt;
    auto filter = FilterExpression::parse(text);
    return filter ? std::nullopt : std::optional(filter.error());
}
} // namespace

FilterMode::FilterMode(QMainWindow &window, SearchField &field,
                       std::shared_ptr<TavDataStore> dataStore)
    : QObject(&window)
    , window_(window)
    , field_(field)
    , note_(new FieldNote(field))
    , completer_(new FilterCompleter(field, std::move(dataStore)))
    , menu_(new QMenu(&field))
{
    setUpMenu();
    connect(&field, &QLineEdit::textChanged, this, &FilterMode::followText);
    connect(&field, &QLineEdit::editingFinished, this, &FilterMode::noteUsed);
    auto *const saved = new SavedFiltersMenu(*InterfaceLoader::outlet<QMenu>(window, "findMenu"));
    connect(saved, &SavedFiltersMenu::filterChosen, this, &FilterMode::choose);
}

void FilterMode::setUpMenu()
{
    button_ =
        field_.addAction(QIcon::fromTheme(QStringLiteral("edit-find")), QLineEdit::LeadingPosition);
    button_->setText(tr("How to find"));
    button_->setToolTip(tr("Find a text, or filter by an expression"));
    for (QToolButton *button : field_.findChildren<QToolButton *>()) {
        if (button->defaultAction() == button_)
            button->setAccessibleName(button_->text());
    }
    connect(button_, &QAction::triggered, this, [this] {
        fillMenu();
        menu_->popup(field_.mapToGlobal(field_.rect().bottomLeft()));
    });
}

void FilterMode::fillMenu()
{
    menu_->clear();
    auto *const modes = new QActionGroup(menu_);
    for (const bool isFilter : {false, true}) {
        QAction *const item = menu_->addAction(isFilter ? tr("Filter &Expression") : tr("&Text"));
        item->setCheckable(true);
        item->setChecked(isFilter == isOn_);
        modes->addAction(item);
        connect(item, &QAction::triggered, this, [this, isFilter] { setOn(isFilter); });
    }
    const QStringList recent = StoredFilters::recent();
    if (!recent.isEmpty())
        menu_->addSection(tr("Recent Filters"));
    for (const QString &expression : recent)
        connect(menu_->addAction(menuText(cutText(visibleText(expression), 80))),
                &QAction::triggered, this, [this, expression] { choose(expression); });
}

void FilterMode::setOn(bool on)
{
    if (on == isOn_)
        return;
    isOn_ = on;
    completer_->setOn(on);
    const QString icon =
        on ? QStringLiteral("vandrel-filter-expression") : QStringLiteral("edit-find");
    button_->setIcon(QIcon::fromTheme(icon));
    field_.setPlaceholderText(on ? tr("Filter, such as speed < max_speed") : tr("Find"));
    field_.setAccessibleName(on ? tr("Filter expression") : tr("Find"));
    field_.setCharacters(on ? expressionLength : SearchField::textLength);
    explain(std::nullopt);
    Q_EMIT modeChanged();
}

std::optional<FindQuery> FilterMode::query()
{
    const QString text = field_.text();
    if (!isOn_)
        return FindQuery{text};
    const auto error = errorIn(text);
    explain(error);
    if (error)
        return std::nullopt;
    if (text.trimmed().isEmpty())
        return FindQuery{};
    auto filter = FilterExpression::parse(text);
    return FindQuery{text, *filter};
}

void FilterMode::explainTakesLong()
{
    note_->setNote(tr("The regular expression takes too long: not every text was searched."));
    isExplaining_ = true;
}

// While one types, an explanation changes and goes, but does not come.
void FilterMode::followText()
{
    if (isExplaining_)
        explain(isOn_ ? errorIn(field_.text()) : std::nullopt);
}

void FilterMode::explain(const std::optional<FilterError> &error)
{
    if (!error && !isExplaining_)
        return;
    isExplaining_ = error.has_value();
    note_->setNote(error ? visibleText(error->message) : QString());
    markText(field_, error ? error->position : 0, error ? error->length : 0);
}

void FilterMode::choose(const QString &expression)
{
    field_.setText(expression);
    setOn(true);
    field_.setFocus();
    StoredFilters::noteUsed(expression);
    Q_EMIT filterChosen();
}

void FilterMode::noteUsed()
{
    if (canSave())
        StoredFilters::noteUsed(field_.text());
}

bool FilterMode::canSave() const
{
    return isOn_ && !field_.text().trimmed().isEmpty() && !errorIn(field_.text());
}

void FilterMode::save()
{
    auto *const dialog = new QInputDialog(&window_);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Save Filter"));
    dialog->setLabelText(tr("Save “%1” as:").arg(cutText(visibleText(field_.text()), 60)));
    connect(dialog, &QInputDialog::textValueSelected, this,
            [expression = field_.text()](const QString &name) {
                if (!name.trimmed().isEmpty())
                    StoredFilters::save(name.trimmed(), expression);
            });
    dialog->open();
}
