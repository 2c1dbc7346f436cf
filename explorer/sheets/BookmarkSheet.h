// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/sheets/Sheet.h"

class QCheckBox;

// Asks for the name of a bookmark, and whether it becomes the default one.
class BookmarkSheet : public Sheet
{
    Q_OBJECT
public:
    explicit BookmarkSheet(QWidget &window);

    void open(const QString &proposedName);

Q_SIGNALS:
    void bookmarkNamed(const QString &name, bool setAsDefault);

private:
    void report() override;

    QLineEdit *addBookmarkNameField_;
    QCheckBox *addBookmarkDefaultCheckbox_;
};
