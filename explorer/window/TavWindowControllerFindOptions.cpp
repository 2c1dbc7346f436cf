// What a search looks at.
#include "explorer/window/TavWindowController.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/SearchField.h"

#include <QCheckBox>

std::array<std::pair<FindOption, QCheckBox *>, 8> TavWindowController::findCheckboxes() const
{
    return {{
        {FindOption::Name, findNameCheckbox_},
        {FindOption::Class, findClassCheckbox_},
        {FindOption::Inheritance, findInheritanceCheckbox_},
        {FindOption::BundleID, findBundleIDCheckbox_},
        {FindOption::Keys, findKeysCheckbox_},
        {FindOption::Values, findValuesCheckbox_},
        {FindOption::KeyValue, findKeyValueCheckbox_},
        {FindOption::Special, findSpecialCheckbox_},
    }};
}

void TavWindowController::loadDefaultFindOptions()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    filteredFindCheckbox_->setChecked(preferences.flag(QStringLiteral("FilteredFind")));
    findOptions_ = FindOptions::fromInt(
        static_cast<FindOptions::Int>(preferences.integer(QStringLiteral("FindOptions"))));
    for (const auto &[option, checkbox] : findCheckboxes())
        checkbox->setChecked(findOptions_.testFlag(option));
    findField_->setEnabled(findOptions_ != FindOptions());
}

void TavWindowController::findOptionsChanged()
{
    FindOptions options;
    for (const auto &[option, checkbox] : findCheckboxes())
        options.setFlag(option, checkbox->isChecked());
    if (options == findOptions_)
        return;
    findOptions_ = options;
    findField_->setEnabled(findOptions_ != FindOptions());
    if (!findOptions_)
        findWithString(QString());
    else if (!findField_->text().isEmpty())
        find();
}

void TavWindowController::resetFindOptions()
{
    loadDefaultFindOptions();
    find();
}
