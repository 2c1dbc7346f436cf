// SPDX-License-Identifier: Apache-2.0
#include "explorer/export/ExportCommands.h"

#include "display/PropertyFormatStore.h"
#include "display/export/JsonExport.h"
#include "display/export/PlainTextExport.h"
#include "explorer/find/FindSession.h"
#include "explorer/selection/EntrySelection.h"
#include "platform/desktop/PagePrinter.h"
#include "platform/documents/DocumentFile.h"
#include "platform/documents/PortableFileName.h"
#include "platform/documents/ReplacementFile.h"
#include "platform/host/Alert.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/LongWork.h"
#include "platform/runloop/RunLoop.h"
#include "store/DataStoreEncoder.h"
#include "store/TavDocument.h"
#include "store/redaction/RedactedStore.h"

#include <QBuffer>
#include <QClipboard>
#include <QFileDialog>
#include <QGuiApplication>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>

namespace {
using Format = ExportRequest::Format;
using Reach = ExportedEntries::Reach;

constexpr auto noReport = [](double) {};
constexpr double redactingPart = 0.5;

bool writeEntries(const ExportedEntries &entries, const ExportRequest &request, QIODevice &device,
                  const Reach &reach)
{
    switch (request.format) {
    case Format::Json:
        return JsonExport::write(entries, device, reach);
    case Format::Csv:
        return CsvExport::write(entries, request.columns, device, reach);
    default:
        return PlainTextExport::write(entries, device, PlainTextExport::Head::Machine, reach);
    }
}

void copyText(const std::function<void(QIODevice &)> &write)
{
    QBuffer text;
    text.open(QIODevice::WriteOnly);
    write(text);
    QGuiApplication::clipboard()->setText(QString::fromUtf8(text.data()));
}

const char *extensionOf(Format format)
{
    switch (format) {
    case Format::Json:
        return "json";
    case Format::Csv:
        return "csv";
    default:
        return "txt";
    }
}
} // namespace

ExportCommands::ExportCommands(QWidget &window, std::shared_ptr<TavDataStore> dataStore,
                               const EntrySelection &selection, const FindSession &session)
    : window_(window)
    , dataStore_(std::move(dataStore))
    , selection_(selection)
    , session_(session)
{}

ExportCommands::~ExportCommands() = default;

void ExportCommands::copyEntryAsText() const
{
    copyText([this](QIODevice &device) {
        PlainTextExport::write(entries(ExportRequest::Scope::Entry), device,
                               PlainTextExport::Head::None, noReport);
    });
}

void ExportCommands::copyEntryAsJson() const
{
    copyText([this](QIODevice &device) {
        JsonExport::write(entries(ExportRequest::Scope::Entry), device, noReport);
    });
}

void ExportCommands::exportEntries()
{
    openSheet(ExportSheet::Purpose::File);
}

void ExportCommands::print()
{
    openSheet(ExportSheet::Purpose::Printer);
}

void ExportCommands::openSheet(ExportSheet::Purpose purpose)
{
    if (!sheet_) {
        sheet_ = std::make_unique<ExportSheet>(window_);
        connect(sheet_.get(), &ExportSheet::requested, this, &ExportCommands::perform);
        connect(sheet_.get(), &ExportSheet::keysNeeded, this, [this](ExportRequest::Scope scope) {
            LongWork work(tr("Collecting the columns…"));
            QStringList keys;
            work.run([&](WorkProgress &progress) {
                keys =
                    CsvExport::keysOf(entries(scope), [&](double part) { progress.reach(part); });
            });
            sheet_->setKeys(keys);
        });
    }
    sheet_->open(purpose, selection_.entry() != nullptr, session_.foundObjects().has_value());
}

// Later: the sheet is still closing.
void ExportCommands::perform(const ExportRequest &request, ExportSheet::Purpose purpose)
{
    RunLoop::performLater(*this, [this, request, purpose] {
        if (purpose == ExportSheet::Purpose::Printer)
            return askForPrinter(request);
        const QString extension = QString::fromLatin1(extensionOf(request.format));
        askForFile(tr("Export"),
                   tr("%1 files").arg(extension.toUpper()) + QLatin1String(" (*.") + extension +
                       u')',
                   suggestedName(request.isRedacted) + u'.' + extension,
                   [this, request](const QString &file) { write(request, file); });
    });
}

void ExportCommands::askForFile(const QString &title, const QString &kind, const QString &name,
                                const Chosen &chosen)
{
    auto *const dialog = new QFileDialog(&window_, title);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilters({kind, tr("All files (*)")});
    dialog->setDefaultSuffix(QFileInfo(name).suffix());
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    dialog->setDirectory(QFileInfo::exists(folder) ? folder : QDir::homePath());
    dialog->selectFile(name);
    connect(dialog, &QFileDialog::fileSelected, this, [this, chosen](const QString &file) {
        RunLoop::performLater(*this, [chosen, file] { chosen(file); });
    });
    dialog->open();
}

ExportedEntries ExportCommands::entries(ExportRequest::Scope scope) const
{
    using enum ExportRequest::Scope;
    const QString &plane = selection_.registryPlane();
    const TavRegistryEntry *const selected = selection_.entry().get();
    if (scope == Found && session_.foundObjects())
        return ExportedEntries::found(*dataStore_, plane, *session_.foundObjects());
    if (scope == Entry && selected)
        return ExportedEntries::single(*dataStore_, plane, *selected);
    const bool isBelow = scope == Subtree && selected;
    return ExportedEntries::subtree(*dataStore_, plane,
                                    isBelow ? *selected : *dataStore_->registryRoot());
}

void ExportCommands::write(const ExportRequest &request, const QString &file)
{
    ReplacementFile replacement(file);
    if (replacement.open() && run(tr("Exporting…"), request, replacement.content()) &&
        replacement.commit())
        return;
    if (replacement.error() != QFileDevice::NoError) // else the user cancelled
        report(tr("“%1” could not be written.").arg(QFileInfo(file).fileName()),
               replacement.errorString());
}

bool ExportCommands::run(const QString &title, const ExportRequest &request, QIODevice &device)
{
    // Open and written now, because the other thread only reads them.
    PropertyFormatStore::synchronize();
    PreferencesStore::standard().synchronize();
    std::unique_ptr<RedactedStore> copy; // which ends on this thread
    bool isWritten = false;
    LongWork work(title);
    const auto writeOnThread = [&](WorkProgress &progress) {
        const ExportedEntries chosen = entries(request.scope);
        if (!request.isRedacted) {
            isWritten =
                writeEntries(chosen, request, device, [&](double part) { progress.reach(part); });
            return;
        }
        copy = std::make_unique<RedactedStore>(
            *dataStore_, [&](double part) { progress.reach(redactingPart * part); });
        isWritten = writeEntries(chosen.in(*copy), request, device, [&](double part) {
            progress.reach(redactingPart + (1 - redactingPart) * part);
        });
    };
    return work.run(writeOnThread) && isWritten;
}

void ExportCommands::askForPrinter(const ExportRequest &request)
{
    const auto printer = std::make_shared<QPrinter>(QPrinter::HighResolution);
    printer->setDocName(suggestedName(request.isRedacted));
    printer->setCreator(QCoreApplication::applicationName());
    auto *const dialog = new QPrintDialog(printer.get(), &window_);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Print"));
    dialog->setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize);
    connect(dialog, &QDialog::accepted, this, [this, printer, request] {
        RunLoop::performLater(*this, [this, printer, request] { printOn(*printer, request); });
    });
    // The printer must live as long as the dialog.
    connect(dialog, &QObject::destroyed, this, [printer] {});
    dialog->open();
}

void ExportCommands::printOn(QPrinter &printer, const ExportRequest &request)
{
    const QString machine =
        request.isRedacted ? QString() : dataStore_->hostName() + QStringLiteral(" · ");
    const QString date = dataStore_->lastUpdateDate().toLocalTime().toString(Qt::ISODate);
    bool isPrinted = false;
    {
        PagePrinter pages(printer,
                          machine + selection_.registryPlane() + QStringLiteral(" · ") + date);
        if (!pages.open(QIODevice::WriteOnly))
            return report(tr("The printer could not be used."), printer.printerName());
        isPrinted = run(tr("Printing…"), request, pages);
        if (!isPrinted)
            printer.abort();
    }
    if (!isPrinted && !printer.outputFileName().isEmpty())
        QFile::remove(printer.outputFileName());
}

// Without the host's name if that is to be removed.
QString ExportCommands::suggestedName(bool isRedacted) const
{
    return isRedacted
               ? tr("registry")
               : portableFileName(dataStore_->hostName() + u' ' + selection_.registryPlane());
}

void ExportCommands::saveRedactedCopy(const TavDocument &document)
{
    askForFile(tr("Save a Copy Without Serial Numbers"), tr("Vandrel snapshots (*.vandrel)"),
               suggestedName(true) + QLatin1String(".vandrel"),
               [this, document = QPointer(&document)](const QString &file) {
                   if (document)
                       saveRedactedCopyAs(*document, file);
               });
}

void ExportCommands::saveRedactedCopyAs(const TavDocument &document, const QString &file)
{
    // Its own file would then differ from what the window shows.
    if (document.hasFile() && QFileInfo(file) == QFileInfo(document.fileName()))
        report(tr("“%1” is the file of this document.").arg(QFileInfo(file).fileName()),
               tr("Choose another name for the copy."));
    else
        writeRedactedCopy(file);
}

void ExportCommands::writeRedactedCopy(const QString &file)
{
    std::unique_ptr<RedactedStore> copy; // which ends on this thread
    bool isCancelled = false;
    const auto content = [&](QIODevice &device, DocumentError &error) {
        QString problem;
        LongWork work(tr("Saving a copy…"));
        isCancelled = !work.run([&](WorkProgress &progress) {
            copy = std::make_unique<RedactedStore>(
                *dataStore_, [&](double part) { progress.reach(redactingPart * part); });
            problem = DataStoreEncoder::encode(copy->store(), device);
            progress.reach(1);
        });
        if (!problem.isNull())
            error.reason = problem;
        return !isCancelled && problem.isNull();
    };
    DocumentError error;
    if (!DocumentFile::write(file, content, error) && !isCancelled)
        report(error.description, error.reason);
}

void ExportCommands::report(const QString &message, const QString &details) const
{
    AlertPanel::show({.title = QCoreApplication::applicationName(),
                      .message = message,
                      .buttons = {tr("OK")},
                      .details = details,
                      .window = &window_});
}
