// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/BookmarkSheet.h"

#include "platform/desktop/InterfaceLoader.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>

BookmarkSheet::BookmarkSheet(QWidget &window)
    : Sheet("AddBookmarkSheet", window)
    , addBookmarkNameField_(InterfaceLoader::outlet<QLineEdit>(dialog(), "addBookmarkNameField"))
    , addBookmarkDefaultCheckbox_(
          InterfaceLoader::outlet<QCheckBox>(dialog(), "addBookmarkDefaultCheckbox"))
{
    connectButtons("addBookmarkCancelButton", "addBookmarkOKButton");
}

void BookmarkSheet::open(const QString &proposedName)
{
    addBookmarkNameField_->setText(proposedName);
    addBookmarkDefaultCheckbox_->setChecked(false);
    openAt(*addBookmarkNameField_);
}

void BookmarkSheet::report()
{
    Q_EMIT bookmarkNamed(addBookmarkNameField_->text(), addBookmarkDefaultCheckbox_->isChecked());
}
