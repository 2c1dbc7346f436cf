// SPDX-License-Identifier: Apache-2.0
// The controls of a search, and the drawer that holds most of them.
#include "explorer/find/FilterMode.h"
#include "explorer/find/FindController.h"
#include "explorer/find/FindDrawer.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/selection/EntrySelection.h"
#include "explorer/views/ExplorerViews.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/Stepper.h"
#include "platform/widgets/ViewNote.h"

#include <QAction>
#include <QCheckBox>
#include <QDockWidget>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>

namespace {
void setShortcuts(QMainWindow &window)
{
    const auto set = [&window](const char *item, Qt::KeyboardModifiers modifiers) {
        InterfaceLoader::outlet<QAction>(window, item)
            ->setShortcuts({QKeyCombination(modifiers | Qt::ControlModifier, Qt::Key_G),
                            QKeyCombination(modifiers, Qt::Key_F3)});
    };
    set("findNextAction", Qt::NoModifier);
    set("findPrevAction", Qt::ShiftModifier);
    set("findNextInAnyPlaneAction", Qt::AltModifier);
    set("findPrevInAnyPlaneAction", Qt::AltModifier | Qt::ShiftModifier);
}
} // namespace

FindController::FindController(QMainWindow &window, std::shared_ptr<TavDataStore> dataStore,
                               const ExplorerContext &context, EntrySelection &selection,
                               ExplorerViews &views)
    : window_(window)
    , dataStore_(dataStore)
    , selection_(selection)
    , views_(views)
    , session_(std::move(dataStore))
{
    connectOutlets(window);
    setUpResults(window, context);
    findStepper_->setUp();
    nameClearButton(*findField_);
    filterMode_ = new FilterMode(window, *findField_, dataStore_);
    new FindDrawer(window, *findOptionsDrawer_);
    closeDrawer();
    connectControls(window);
    setShortcuts(window);
}

FindController::~FindController() = default;

void FindController::connectOutlets(QMainWindow &window)
{
    findField_ = InterfaceLoader::outlet<SearchField>(window, "findField");
    findStepper_ = InterfaceLoader::outlet<Stepper>(window, "findStepper");
    findOptionsDrawerButton_ =
        InterfaceLoader::outlet<QToolButton>(window, "findOptionsDrawerButton");
    findOptionsDrawer_ = InterfaceLoader::outlet<QDockWidget>(window, "findOptionsDrawer");
    filteredFindCheckbox_ = InterfaceLoader::outlet<QCheckBox>(window, "filteredFindCheckbox");
    findTableView_ = InterfaceLoader::outlet<QTableView>(window, "findTableView");
    searchPropertiesButton_ =
        InterfaceLoader::outlet<QPushButton>(window, "searchPropertiesButton");
}

void FindController::setUpResults(QMainWindow &window, const ExplorerContext &context)
{
    auto *const previewField = InterfaceLoader::outlet<QLineEdit>(window, "findPreviewField");
    results_ = std::make_unique<TavFindTableViewDataSource>(
        context, session_, *findTableView_, *previewField,
        *InterfaceLoader::outlet<QLabel>(window, "findNumMatchedField"));
    nameClearButton(*previewField);
    nothingFoundNote_ = new ViewNote(
        tr("Nothing matches"), *InterfaceLoader::outlet<QStackedWidget>(window, "explorerTabView"));
    nothingFoundNote_->addButton(*searchPropertiesButton_);
    connect(
        results_.get(), &TavFindTableViewDataSource::pathChosen, this,
        [this](const TavRegistryEntryPath &path) { selection_.goToEntryPath(path, true, true); });
    connect(findTableView_, &QTableView::customContextMenuRequested, this,
            [this](const QPoint &place) {
                const int row = findTableView_->rowAt(place.y());
                if (selection_.entry() && results_->entryAtIndex(row) == selection_.entry())
                    Q_EMIT contextMenuRequested(findTableView_->viewport()->mapToGlobal(place));
            });
}

void FindController::connectControls(QMainWindow &window)
{
    connect(findField_, &SearchField::searchRequested, this, &FindController::find);
    connect(findField_, &SearchField::cancelled, this, [this] {
        find();
        views_.makeFirstResponder();
    });
    connect(filterMode_, &FilterMode::modeChanged, this, &FindController::filterModeChanged);
    connect(filterMode_, &FilterMode::filterChosen, this, &FindController::find);
    connect(findStepper_, &Stepper::stepped, this, &FindController::findStep);
    connect(findOptionsDrawerButton_, &QToolButton::clicked, this,
            &FindController::toggleFindOptionsDrawerButtonClicked);
    connect(findOptionsDrawer_, &QDockWidget::visibilityChanged, this, [this] {
        findOptionsDrawerButton_->setChecked(drawerIsOpen());
        Q_EMIT shownEntriesChanged();
    });
    connect(filteredFindCheckbox_, &QCheckBox::clicked, this, &FindController::filteredFindChanged);
    for (const auto &[option, checkbox] : findCheckboxes())
        connect(checkbox, &QCheckBox::clicked, this, &FindController::findOptionsChanged);
    connect(InterfaceLoader::outlet<QPushButton>(window, "resetFindOptionsButton"),
            &QPushButton::clicked, this, &FindController::resetFindOptions);
    for (QPushButton *button : {searchPropertiesButton_, nothingFoundNote_->button()})
        connect(button, &QPushButton::clicked, this, &FindController::searchPropertiesToo);
}

std::array<std::pair<FindOption, QCheckBox *>, 9> FindController::findCheckboxes() const
{
    const auto box = [this](const char *name) {
        return InterfaceLoader::outlet<QCheckBox>(window_, name);
    };
    return {{
        {FindOption::Name, box("findNameCheckbox")},
        {FindOption::Class, box("findClassCheckbox")},
        {FindOption::Inheritance, box("findInheritanceCheckbox")},
        {FindOption::BundleID, box("findBundleIDCheckbox")},
        {FindOption::Keys, box("findKeysCheckbox")},
        {FindOption::Values, box("findValuesCheckbox")},
        {FindOption::KeyValue, box("findKeyValueCheckbox")},
        {FindOption::Special, box("findSpecialCheckbox")},
        {FindOption::ShownValues, box("findShownValuesCheckbox")},
    }};
}

void FindController::setOptions(FindOptions options)
{
    session_.setOptions(options);
    enableControls();
}

// The options are where a text is searched.
void FindController::enableControls()
{
    findField_->setEnabled(session_.options() || isFilterMode());
    for (const auto &[option, checkbox] : findCheckboxes())
        checkbox->setEnabled(!isFilterMode());
}

bool FindController::isFilterMode() const
{
    return filterMode_->isOn();
}

void FindController::toggleFilterMode()
{
    filterMode_->setOn(!isFilterMode());
    beginFind();
}

void FindController::filterModeChanged()
{
    enableControls();
    if (!findField_->text().isEmpty())
        find();
    Q_EMIT shownEntriesChanged();
}

bool FindController::canSaveFilter() const
{
    return filterMode_->canSave();
}

void FindController::saveFilter()
{
    filterMode_->save();
}

void FindController::loadDefaultFindOptions()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    filteredFindCheckbox_->setChecked(preferences.flag(PreferenceKeys::filteredFind));
    setOptions(FindOptions::fromInt(
        static_cast<FindOptions::Int>(preferences.integer(PreferenceKeys::findOptions))));
    for (const auto &[option, checkbox] : findCheckboxes())
        checkbox->setChecked(session_.options().testFlag(option));
}

void FindController::findOptionsChanged()
{
    FindOptions options;
    for (const auto &[option, checkbox] : findCheckboxes())
        options.setFlag(option, checkbox->isChecked());
    if (options == session_.options())
        return;
    setOptions(options);
    if (!options)
        findWithString(QString());
    else if (!findField_->text().isEmpty())
        find();
}

// The button that had the keyboard hides when it is not needed any more.
void FindController::searchPropertiesToo()
{
    for (const auto &[option, checkbox] : findCheckboxes()) {
        if (searchInProperties.testFlag(option))
            checkbox->setChecked(true);
    }
    setOptions(session_.options() | searchInProperties);
    findField_->setFocus(Qt::OtherFocusReason);
    findWithString(QString(session_.findQuery()));
}

void FindController::resetFindOptions()
{
    loadDefaultFindOptions();
    find();
}

void FindController::windowWillClose()
{
    findOptionsDrawer_->disconnect(this);
}

bool FindController::drawerIsOpen() const
{
    return !findOptionsDrawer_->isHidden();
}

void FindController::toggleFindOptionsDrawer()
{
    findOptionsDrawerButton_->click();
}

void FindController::toggleFindOptionsDrawerButtonClicked()
{
    if (drawerIsOpen())
        closeDrawer();
    else
        findOptionsDrawer_->show();
}

void FindController::closeDrawer()
{
    const bool hadFocus = findOptionsDrawer_->isAncestorOf(window_.focusWidget());
    findOptionsDrawer_->hide();
    if (hadFocus)
        views_.makeFirstResponder();
}
