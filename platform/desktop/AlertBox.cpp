// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/AlertBox.h"

#include "platform/runloop/RunLoop.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {
QObject &ownerOf(const Alert &alert)
{
    return alert.window ? static_cast<QObject &>(*alert.window) : *qApp;
}

void setContents(QMessageBox &box, const Alert &alert)
{
    box.setWindowTitle(alert.title);
    // File names and system errors must not be read as rich text.
    box.setTextFormat(alert.kind == Alert::Kind::About ? Qt::RichText : Qt::PlainText);
    box.setText(alert.message);
    box.setInformativeText(alert.details);
    if (!alert.moreDetails.isNull())
        box.setDetailedText(alert.moreDetails);
    if (alert.kind == Alert::Kind::About)
        box.setIconPixmap(QGuiApplication::windowIcon().pixmap(64, 64));
    else
        box.setIcon(alert.kind == Alert::Kind::Warning ? QMessageBox::Warning
                                                       : QMessageBox::Information);
}

QList<QAbstractButton *> addButtons(QMessageBox &box, const QStringList &titles)
{
    if (titles.isEmpty())
        return {box.addButton(QMessageBox::Ok)};
    QList<QAbstractButton *> buttons;
    for (const QString &title : titles)
        buttons.append(box.addButton(title, QMessageBox::ActionRole));
    return buttons;
}

Qt::WindowModality modalityOf(const Alert &alert)
{
    if (!alert.isModal)
        return Qt::NonModal;
    return alert.window ? Qt::WindowModal : Qt::ApplicationModal;
}
} // namespace

QMessageBox *AlertBox::show(const Alert &alert, const DesktopServices::AlertAnswer &answer)
{
    auto *const box = new QMessageBox(alert.window ? alert.window : QApplication::activeWindow());
    box->setAttribute(Qt::WA_DeleteOnClose);
    setContents(*box, alert);
    const QList<QAbstractButton *> buttons = addButtons(*box, alert.buttons);
    box->setDefaultButton(static_cast<QPushButton *>(buttons.first()));
    box->setEscapeButton(buttons.last());
    if (answer) {
        QObject &owner = ownerOf(alert);
        // Deferred: the answer may close the window and this box with it.
        QObject::connect(box, &QMessageBox::buttonClicked, &owner,
                         [answer, buttons, &owner](QAbstractButton *button) {
                             const auto number = static_cast<int>(buttons.indexOf(button));
                             RunLoop::performLater(owner, [answer, number] { answer(number); });
                         });
    }
    box->setWindowModality(modalityOf(alert));
    box->show();
    return box;
}

void AlertBox::present(const Alert &alert, const DesktopServices::AlertAnswer &answer)
{
    QMetaObject::invokeMethod(
        &ownerOf(alert), [alert, answer] { show(alert, answer); }, Qt::QueuedConnection);
}
