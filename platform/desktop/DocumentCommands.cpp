// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DocumentCommands.h"

#include "platform/documents/DocumentController.h"
#include "platform/documents/DocumentFile.h"
#include "platform/documents/PortableFileName.h"
#include "platform/host/Alert.h"
#include "platform/host/DesktopServices.h"
#include "platform/runloop/RunLoop.h"
#include "platform/widgets/BusyCursor.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QPointer>
#include <QStandardPaths>

namespace {
// The document's active window, else its first one.
QWidget *windowOf(const Document &document)
{
    const auto &controllers = document.windowControllers();
    for (const auto &controller : controllers) {
        if (controller->documentWindow()->isActiveWindow())
            return controller->documentWindow();
    }
    return controllers.empty() ? nullptr : controllers.front()->documentWindow();
}

void report(const DocumentCommands::Done &done, bool success)
{
    if (done)
        done(success);
}
} // namespace

DocumentCommands::DocumentCommands(DocumentController &documents, Kind kind)
    : documents_(documents)
    , kind_(std::move(kind))
{
    connect(&documents, &DocumentController::terminationRequested, this,
            [this] { RunLoop::performLater(*this, [this] { terminate(); }); });
}

void DocumentCommands::newDocument()
{
    const BusyCursor busy;
    documents_.newDocument();
}

QFileDialog *DocumentCommands::makeDialog(QWidget &window, const QString &title) const
{
    auto *const dialog = new QFileDialog(&window, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters({tr("%1 (*.%2)").arg(kind_.name, kind_.extension), tr("All files (*)")});
    dialog->setDefaultSuffix(kind_.extension);
    return dialog;
}

void DocumentCommands::openDocument(QWidget &window)
{
    QFileDialog *const dialog = makeDialog(window, tr("Open"));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    const QStringList recent = recentDocuments_.files();
    if (!recent.isEmpty())
        dialog->setDirectory(QFileInfo(recent.first()).path());
    // Deferred: a dialog is still active when it emits its signal.
    connect(dialog, &QFileDialog::filesSelected, this,
            [this, window = QPointer(&window)](const QStringList &files) {
                RunLoop::performLater(*this, [this, files, window] { openFiles(files, window); });
            });
    dialog->open();
}

void DocumentCommands::openFiles(const QStringList &files, QWidget *window)
{
    showFailures(open(files), window);
}

QList<DocumentCommands::Failure> DocumentCommands::open(const QStringList &files, bool display)
{
    const BusyCursor busy;
    QList<Failure> failures;
    for (const QString &file : files) {
        Failure failure{file, {}};
        if (const Document *const document =
                documents_.openDocument(file, failure.error, display)) {
            noteUsed(*document, file);
            continue;
        }
        if (DocumentFile::isCancelled(failure.error))
            break; // the user cancelled
        failures.append(failure);
        if (!QFileInfo::exists(file))
            recentDocuments_.remove(QFileInfo(file).absoluteFilePath());
    }
    return failures;
}

// Several failures share a box to save clicks.
void DocumentCommands::showFailures(const QList<Failure> &failures, QWidget *window) const
{
    if (failures.isEmpty())
        return;
    QStringList details;
    for (const Failure &failure : failures) {
        if (failures.size() > 1)
            details.append(failure.file + u'\n' + failure.error.description + u'\n' +
                           failure.error.reason);
        else
            details = QStringList{failure.error.reason, failure.file};
    }
    AlertPanel::show({.title = QCoreApplication::applicationName(),
                      .message = failures.size() > 1 ? tr("Some documents could not be opened.")
                                                     : failures.first().error.description,
                      .buttons = {tr("OK")},
                      .details = details.join(QLatin1String("\n\n")),
                      .window = window});
}

void DocumentCommands::saveDocument(Document &document, const Done &done)
{
    if (document.hasFile())
        save(document, document.fileName(), windowOf(document), done);
    else
        saveDocumentAs(document, done);
}

void DocumentCommands::saveDocumentAs(Document &document, const Done &done)
{
    QWidget *const window = windowOf(document);
    QFileDialog *const dialog = makeDialog(*window, tr("Save As"));
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    const QCheckBox *const copyBox = addCopyBox(*dialog);
    const QFileInfo suggested(suggestedFile(document));
    dialog->setDirectory(suggested.absoluteDir().exists() ? suggested.path() : QDir::homePath());
    dialog->selectFile(suggested.fileName());
    connect(dialog, &QFileDialog::finished, &document,
            [this, dialog, done, &document, copyBox, window = QPointer(window)](int result) {
                const QString file = dialog->selectedFiles().value(0);
                const bool isCopy = copyBox && copyBox->isChecked();
                RunLoop::performLater(document, [this, done, &document,
                                                 isAccepted = result == QDialog::Accepted, isCopy,
                                                 file, window] {
                    if (isAccepted && isCopy)
                        Q_EMIT copyRequested(document, file);
                    if (isAccepted && !isCopy)
                        save(document, file, window ? window.data() : windowOf(document), done);
                    else
                        report(done, false);
                });
            });
    dialog->open();
}

QCheckBox *DocumentCommands::addCopyBox(QFileDialog &dialog) const
{
    if (kind_.copyOption.isNull())
        return nullptr;
    // The desktop's own dialog has no place for a box.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    auto *const box = new QCheckBox(kind_.copyOption, &dialog);
    auto *const layout = qobject_cast<QGridLayout *>(dialog.layout());
    layout->addWidget(box, layout->rowCount(), 0, 1, layout->columnCount());
    return box;
}

QString DocumentCommands::suggestedFile(const Document &document) const
{
    if (document.hasFile())
        return document.fileName();
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + u'/' +
           portableFileName(document.suggestedName()) + u'.' + kind_.extension;
}

void DocumentCommands::save(Document &document, const QString &file, QWidget *window,
                            const Done &done)
{
    const auto fail = [&](const QString &message, const QString &details) {
        AlertPanel::show({.title = QCoreApplication::applicationName(),
                          .message = message,
                          .buttons = {tr("OK")},
                          .details = details,
                          .window = window});
        report(done, false);
    };
    const Document *const other = documents_.documentForFile(file);
    if (other && other != &document)
        return fail(tr("“%1” is open in another window.").arg(QFileInfo(file).fileName()),
                    tr("Choose another name, or close that window first."));
    DocumentError error;
    {
        const BusyCursor busy;
        if (!document.save(file, error))
            return fail(error.description, error.reason);
    }
    noteUsed(document, file);
    report(done, true);
}

void DocumentCommands::noteUsed(const Document &document, const QString &file)
{
    recentDocuments_.add(file);
    if (const auto &noteRecentFile = DesktopServices::instance().noteRecentFile)
        noteRecentFile(file, document.fileType());
}

void DocumentCommands::prepareToClose(Document &document, const Done &done)
{
    if (!document.isDocumentEdited())
        return report(done, true);
    document.showWindows();
    AlertPanel::show(
        {.title = QCoreApplication::applicationName(),
         .message = tr("Save the changes to “%1” before closing?").arg(document.displayName()),
         .buttons = {tr("&Save"), tr("&Don’t Save"), tr("Cancel")},
         .details = tr("It has changed since it was last saved. Without saving, the changes are "
                       "lost."),
         .window = windowOf(document)},
        [this, done, document = QPointer(&document)](int button) {
            if (!document)
                return;
            if (button == 0)
                saveDocument(*document, done);
            else
                report(done, button == 1);
        });
}

void DocumentCommands::terminate()
{
    for (const auto &document : documents_.documents()) {
        if (!document->isDocumentEdited())
            continue;
        // Recursive, because this document is now saved or closed.
        prepareToClose(*document, [this, edited = QPointer(document.get())](bool mayClose) {
            if (!mayClose)
                return;
            if (edited)
                documents_.closeDocument(*edited);
            terminate();
        });
        return;
    }
    documents_.closeAllDocuments();
    Q_EMIT readyToTerminate();
}
