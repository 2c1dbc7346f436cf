// SPDX-License-Identifier: Apache-2.0
#include "platform/widgets/SaveDialog.h"

#include "platform/documents/ReplacementFile.h"
#include "platform/host/Alert.h"

#include <QFileDialog>
#include <QStandardPaths>

void SaveDialog::open(QWidget &parent, const QString &title, const QString &name,
                      std::vector<Form> forms, std::function<void(const QString &file)> chosen)
{
    auto *const dialog = new QFileDialog(&parent, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    QStringList filters;
    for (const Form &form : forms)
        filters.append(form.filter);
    dialog->setNameFilters(filters);
    dialog->setDefaultSuffix(forms.front().suffix);
    QObject::connect(dialog, &QFileDialog::filterSelected, dialog,
                     [dialog, forms](const QString &filter) {
                         for (const Form &form : forms) {
                             if (form.filter == filter)
                                 dialog->setDefaultSuffix(form.suffix);
                         }
                     });
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    dialog->setDirectory(QFileInfo::exists(folder) ? folder : QDir::homePath());
    dialog->selectFile(name);
    QObject::connect(dialog, &QFileDialog::fileSelected, &parent, std::move(chosen));
    dialog->open();
}

void SaveDialog::write(QWidget &parent, const QString &file,
                       const std::function<bool(QIODevice &)> &write)
{
    ReplacementFile replacement(file);
    if (replacement.open() && write(replacement.content()) && replacement.commit())
        return;
    AlertPanel::show({.title = QCoreApplication::applicationName(),
                      .message = tr("“%1” could not be written.").arg(QFileInfo(file).fileName()),
                      .buttons = {tr("OK")},
                      .details = replacement.errorString(),
                      .window = parent.window()});
}
