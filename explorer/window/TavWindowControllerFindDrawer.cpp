// The controls of searching, and the drawer that holds most of them.
#include "explorer/find/FindDrawer.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/ClearButton.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/Stepper.h"
#include "platform/widgets/ViewNote.h"

#include <QAction>
#include <QCheckBox>
#include <QDockWidget>
#include <QLabel>
#include <QMainWindow>
#include <QPushButton>
#include <QStackedWidget>
#include <QTableView>
#include <QToolButton>

void TavWindowController::setUpFind()
{
    const auto outlet = [this](auto *&field, const char *name) {
        field = InterfaceLoader::outlet<std::remove_reference_t<decltype(*field)>>(*window_, name);
    };
    outlet(findStepper_, "findStepper");
    outlet(findOptionsDrawerButton_, "findOptionsDrawerButton");
    outlet(findOptionsDrawer_, "findOptionsDrawer");
    outlet(filteredFindCheckbox_, "filteredFindCheckbox");
    outlet(findNameCheckbox_, "findNameCheckbox");
    outlet(findClassCheckbox_, "findClassCheckbox");
    outlet(findInheritanceCheckbox_, "findInheritanceCheckbox");
    outlet(findBundleIDCheckbox_, "findBundleIDCheckbox");
    outlet(findKeysCheckbox_, "findKeysCheckbox");
    outlet(findValuesCheckbox_, "findValuesCheckbox");
    outlet(findKeyValueCheckbox_, "findKeyValueCheckbox");
    outlet(findSpecialCheckbox_, "findSpecialCheckbox");
    outlet(findPreviewField_, "findPreviewField");
    outlet(findTableView_, "findTableView");
    findDataSource_ = std::make_unique<TavFindTableViewDataSource>(
        *this, *findTableView_, *findPreviewField_,
        *InterfaceLoader::outlet<QLabel>(*window_, "findNumMatchedField"));
    findTableView_->installEventFilter(this);
    nothingFoundNote_ = new ViewNote(tr("Nothing matches"), *explorerTabView_);
    findStepper_->setUp();
    nameClearButton(*findField_);
    nameClearButton(*findPreviewField_);
    new FindDrawer(*window_, *findOptionsDrawer_);
    closeDrawer();

    using Controller = TavWindowController;
    connect(findField_, &SearchField::searchRequested, this, &Controller::find);
    connect(findField_, &SearchField::cancelled, this, [this] {
        find();
        makeExplorerFirstResponder();
    });
    connect(findStepper_, &Stepper::stepped, this, &Controller::findStep);
    connect(findOptionsDrawerButton_, &QToolButton::clicked, this,
            &Controller::toggleFindOptionsDrawerButtonClicked);
    connect(findOptionsDrawer_, &QDockWidget::visibilityChanged, this,
            &Controller::drawerVisibilityChanged);
    connect(filteredFindCheckbox_, &QCheckBox::clicked, this, &Controller::filteredFindChanged);
    for (const auto &[option, checkbox] : findCheckboxes())
        connect(checkbox, &QCheckBox::clicked, this, &Controller::findOptionsChanged);
    connect(InterfaceLoader::outlet<QPushButton>(*window_, "resetFindOptionsButton"),
            &QPushButton::clicked, this, &Controller::resetFindOptions);
}

void TavWindowController::setFindShortcuts()
{
    const auto set = [this](const char *item, Qt::KeyboardModifiers modifiers) {
        InterfaceLoader::outlet<QAction>(*window_, item)
            ->setShortcuts({QKeyCombination(modifiers | Qt::ControlModifier, Qt::Key_G),
                            QKeyCombination(modifiers, Qt::Key_F3)});
    };
    set("findNextAction", Qt::NoModifier);
    set("findPrevAction", Qt::ShiftModifier);
    set("findNextInAnyPlaneAction", Qt::AltModifier);
    set("findPrevInAnyPlaneAction", Qt::AltModifier | Qt::ShiftModifier);
}

bool TavWindowController::drawerIsOpen() const
{
    return !findOptionsDrawer_->isHidden();
}

void TavWindowController::toggleFindOptionsDrawer()
{
    findOptionsDrawerButton_->click();
}

void TavWindowController::toggleFindOptionsDrawerButtonClicked()
{
    if (drawerIsOpen())
        closeDrawer();
    else
        openDrawer();
}

void TavWindowController::openDrawer()
{
    findOptionsDrawer_->show();
}

void TavWindowController::closeDrawer()
{
    const bool hadFocus = findOptionsDrawer_->isAncestorOf(window_->focusWidget());
    findOptionsDrawer_->hide();
    if (hadFocus)
        makeExplorerFirstResponder();
}

void TavWindowController::drawerVisibilityChanged()
{
    findOptionsDrawerButton_->setChecked(drawerIsOpen());
    validateActions();
}
