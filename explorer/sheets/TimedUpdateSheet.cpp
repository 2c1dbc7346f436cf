// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/TimedUpdateSheet.h"

#include "platform/desktop/InterfaceLoader.h"

#include <QDialog>
#include <QLineEdit>
#include <QLocale>
#include <optional>

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

TimedUpdateSheet::TimedUpdateSheet(QWidget &window)
    : Sheet("TimedUpdateSheet", window)
    , timedUpdateField_(InterfaceLoader::outlet<QLineEdit>(dialog(), "timedUpdateField"))
{
    connectButtons("timedUpdateCancelButton", "timedUpdateSetButton");
}

void TimedUpdateSheet::open(double pollInterval)
{
    timedUpdateField_->setText(QString::number(static_cast<int>(pollInterval)));
    openAt(*timedUpdateField_);
}

void TimedUpdateSheet::report()
{
    if (const auto seconds = secondsIn(timedUpdateField_->text()))
        Q_EMIT pollIntervalEntered(*seconds);
}
