#include "platform/desktop/AlertBox.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>

void AlertBox::present(const Alert &alert, const AlertPanel::Answer &answer)
{
    auto *const box = new QMessageBox(alert.window);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setIcon(QMessageBox::Warning);
    box->setWindowTitle(alert.title);
    // Names of files and reasons of the system are not ours to interpret.
    box->setTextFormat(Qt::PlainText);
    box->setText(alert.message);
    box->setInformativeText(alert.details);
    QList<QAbstractButton *> buttons;
    for (const QString &title : alert.buttons)
        buttons.append(box->addButton(title, QMessageBox::ActionRole));
    box->setDefaultButton(static_cast<QPushButton *>(buttons.first()));
    box->setEscapeButton(buttons.last());

    // Later, since the answer may close the window and this box with it.
    QObject *const owner = alert.window ? static_cast<QObject *>(alert.window) : qApp;
    QObject::connect(box, &QMessageBox::buttonClicked, owner,
                     [answer, buttons, owner](QAbstractButton *button) {
                         const auto number = static_cast<int>(buttons.indexOf(button));
                         QMetaObject::invokeMethod(
                             owner, [answer, number] { answer(number); }, Qt::QueuedConnection);
                     });
    box->setWindowModality(alert.window ? Qt::WindowModal : Qt::ApplicationModal);
    box->show();
}
