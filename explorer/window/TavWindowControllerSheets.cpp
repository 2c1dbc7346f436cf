#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/FactField.h"
#include "store/TavDataStore.h"

#include <QDialog>
#include <QLineEdit>
#include <QLocale>
#include <QMainWindow>

namespace {
// As the locale writes numbers, or else as programs do, with or without the unit.
std::optional<double> secondsIn(const QString &text)
{
    QString number = text.trimmed();
    if (number.endsWith(u's', Qt::CaseInsensitive))
        number = number.chopped(1).trimmed();
    for (const QLocale &locale : {QLocale(), QLocale::c()}) {
        bool isNumber = false;
        const double seconds = locale.toDouble(number, &isNumber);
        if (isNumber)
            return seconds;
    }
    return std::nullopt;
}
} // namespace

QDialog *TavWindowController::loadSheet(const char *name)
{
    InterfaceLoader loader;
    loader.addWidgetClass<FactField>();
    auto *const sheet = qobject_cast<QDialog *>(loader.load(QLatin1String(name)).release());
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
    if (&sheet == timedUpdateSheet_) {
        if (const auto seconds = secondsIn(timedUpdateField_->text()))
            dataStore_->setPollInterval(*seconds);
    } else if (&sheet == goToPathSheet_) {
        goToRegistryPath(goToPathField_->text());
    } else if (&sheet == addBookmarkSheet_) {
        addBookmark();
    }
    validateActions();
}
