// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/ButtonMatrix.h"

#include <QAbstractButton>
#include <QVariant>

ButtonMatrix::ButtonMatrix(QWidget &container)
{
    for (QAbstractButton *button : container.findChildren<QAbstractButton *>()) {
        const QVariant tag = button->property("tag");
        if (button->isCheckable() && tag.isValid())
            group_.addButton(button, tag.toInt());
    }
    // The tab key goes to the selected button, arrow keys to the others.
    connect(&group_, &QButtonGroup::buttonToggled, this,
            [](QAbstractButton *button, bool isChosen) {
                button->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
            });
    if (group_.checkedButton()) {
        for (QAbstractButton *button : group_.buttons())
            button->setFocusPolicy(button->isChecked() ? Qt::StrongFocus : Qt::ClickFocus);
    }
    connect(&group_, &QButtonGroup::idClicked, this, &ButtonMatrix::chosen);
}

std::optional<int> ButtonMatrix::selectedTag() const
{
    return group_.checkedButton() ? std::optional(group_.checkedId()) : std::nullopt;
}

void ButtonMatrix::selectTag(int tag)
{
    if (QAbstractButton *const button = cell(tag))
        button->setChecked(true);
}

void ButtonMatrix::setEnabled(bool isEnabled)
{
    for (QAbstractButton *button : group_.buttons())
        button->setEnabled(isEnabled);
}
