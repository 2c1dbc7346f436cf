#include "platform/desktop/AlertBox.h"

#include "platform/runloop/RunLoop.h"

#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>

namespace {
void show(const Alert &alert, QWidget *window, const AlertPanel::Answer &answer)
{
    auto *const box = new QMessageBox(window ? window : QApplication::activeWindow());
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
    QObject *const owner = window ? static_cast<QObject *>(window) : qApp;
    QObject::connect(box, &QMessageBox::buttonClicked, owner,
                     [answer, buttons, owner](QAbstractButton *button) {
                         const auto number = static_cast<int>(buttons.indexOf(button));
                         RunLoop::performLater(*owner, [answer, number] { answer(number); });
                     });
    box->setWindowModality(window ? Qt::WindowModal : Qt::ApplicationModal);
    box->show();
}
} // namespace

// Later, since the window that it comes over may be about to show.
void AlertBox::present(const Alert &alert, const AlertPanel::Answer &answer)
{
    QObject *const owner = alert.window ? static_cast<QObject *>(alert.window) : qApp;
    QMetaObject::invokeMethod(
        owner, [alert, window = QPointer(alert.window), answer] { show(alert, window, answer); },
        Qt::QueuedConnection);
}
