// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/PathSheet.h"

#include "explorer/selection/RegistryPathHint.h"
#include "explorer/sheets/EntryPathCompleter.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FactField.h"

#include <QAbstractItemView>
#include <QDialog>
#include <QLineEdit>

PathSheet::PathSheet(QWidget &window, const std::shared_ptr<TavDataStore> &dataStore)
    : Sheet("PathSheetDialog", window)
    , goToPathField_(InterfaceLoader::outlet<QLineEdit>(dialog(), "goToPathField"))
    , completer_(new EntryPathCompleter(*goToPathField_, dataStore))
{
    connectButtons("goToPathCancelButton", "goToPathGoButton");
    auto *const hint = new RegistryPathHint(
        *goToPathField_, *InterfaceLoader::outlet<FactField>(dialog(), "goToPathMessageField"));
    connect(completer_, &EntryPathCompleter::problemRead, hint, &RegistryPathHint::show);
    // While the list of completions is open, the sheet does not get the key.
    connect(goToPathField_, &QLineEdit::returnPressed, this, [this] {
        QAbstractItemView &offers = *completer_->popup();
        if (!offers.isVisible() || offers.currentIndex().isValid())
            return;
        offers.hide();
        perform();
    });
}

void PathSheet::open()
{
    completer_->refresh();
    openAt(*goToPathField_);
}

void PathSheet::report()
{
    Q_EMIT pathEntered(goToPathField_->text());
}
