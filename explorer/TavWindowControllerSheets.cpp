#include "explorer/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "store/TavDataStore.h"

#include <QDialog>
#include <QLineEdit>
#include <QLocale>
#include <QMainWindow>

namespace {
// As the locale writes numbers, or else as programs do. 0 for what is no number.
double secondsIn(const QString &text)
{
    bool isNumber = false;
    const double seconds = QLocale().toDouble(text, &isNumber);
    return isNumber ? seconds : QLocale::c().toDouble(text);
}
} // namespace

QDialog *TavWindowController::loadSheet(const char *name)
{
    auto *const sheet =
        qobject_cast<QDialog *>(InterfaceLoader().load(QLatin1String(name)).release());
    Q_ASSERT(sheet);
    sheet->setParent(window_.get(), Qt::Sheet);
    sheet->setWindowModality(Qt::WindowModal);
    connect(sheet, &QDialog::finished, this,
            [this, sheet](int returnCode) { didEndSheet(*sheet, returnCode); });
    return sheet;
}

void TavWindowController::didEndSheet(const QDialog &sheet, int returnCode)
{
    if (returnCode == 0)
        return;
    if (&sheet == timedUpdateSheet_)
        dataStore_->setPollInterval(secondsIn(timedUpdateField_->text().trimmed()));
    else if (&sheet == goToPathSheet_)
        goToRegistryPath(goToPathField_->text());
    else if (&sheet == addBookmarkSheet_)
        addBookmark();
    validateActions();
}
