// SPDX-License-Identifier: Apache-2.0
#include "app/TavApplicationDelegate.h"

#include "app/CommandLine.h"
#include "app/CompareMenu.h"
#include "app/FileComparison.h"
#include "app/HelpWindow.h"
#include "app/PreferencesWarning.h"
#include "app/WindowPicture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "explorer/export/ExportCommands.h"
#include "explorer/window/TavWindowController.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/desktop/AlertBox.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/desktop/RecentDocumentsMenu.h"
#include "platform/desktop/WindowSizeAutosave.h"
#include "platform/desktop/WindowsMenu.h"
#include "platform/host/PowerMessages.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/runloop/RunLoop.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QTimer>

namespace {
QString textOf(const DocumentCommands::Failure &failure)
{
    return QStringLiteral("%1: %2 %3")
        .arg(failure.file, failure.error.description, failure.error.reason);
}
} // namespace

std::unique_ptr<RegistryService> TavApplicationDelegate::openRegistry(const CommandLine &line,
                                                                      QString *error)
{
    auto service = LinuxRegistryService::create(line.sysfsRoot);
    if (!service) {
        *error = service.error().message();
        return nullptr;
    }
    (*service)->setSleepMessagesFactory([] { return std::make_unique<PowerMessages>(); });
    return std::move(*service);
}

TavApplicationDelegate::TavApplicationDelegate(std::unique_ptr<RegistryService> service)
    : service_(std::move(service))
    , defaultsController_(*service_)
    , documents_(*service_)
    , documentCommands_(documents_, {tr("Vandrel snapshots"), QStringLiteral("vandrel"),
                                     tr("&Remove serial numbers and addresses")})
    , documentWindows_(documents_, documentCommands_)
    , bookmarksController_(
          {.mainWindow = [this] { return mainWindowController(); },
           .hasDocuments = [this] { return !documents_.documents().empty(); },
           .defaultBookmarkPopUp = [this] { return defaultsController_.defaultBookmarkPopUp(); }})
    , storedFormats_(documents_)
    , sessionEnd_(documents_, documentCommands_)
{
    documents_.setWindowControllerFactory(
        [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    documents_.setBookmarksCheck([this] { bookmarksController_.checkForDocuments(); });
    connect(&documents_, &DocumentController::windowControllerAdded, this,
            [this](Document &document, DocumentWindowController &controller) {
                connectCommands(static_cast<TavDocument &>(document),
                                static_cast<TavWindowController &>(controller));
            });
    connect(&TavFormatController::sharedInstance(), &TavFormatController::dataViewOptionsChanged,
            &documents_, &TavDocumentController::dataViewOptionsChanged);
    connect(&documentCommands_, &DocumentCommands::copyRequested, this,
            [](Document &document, const QString &file) {
                auto &window =
                    static_cast<TavWindowController &>(*document.windowControllers().front());
                window.exporter().saveRedactedCopyAs(window.document(), file);
            });
    connect(&documentCommands_, &DocumentCommands::readyToTerminate, qApp,
            [] { QApplication::exit(); });
    connect(&defaultsController_, &TavDefaultsController::panelLoaded, this,
            [this] { bookmarksController_.rebuildBookmarksMenus(); });
    connect(&defaultsController_, &TavDefaultsController::defaultBookmarkPopUpChanged, this,
            [this] { bookmarksController_.defaultBookmarkPopUpChanged(); });
}

TavApplicationDelegate::~TavApplicationDelegate()
{
    documents_.setBookmarksCheck({});
    documents_.closeAllDocuments(); // their windows use members destroyed below
}

// From here on property trees are built of nodes that can be shown.
void TavApplicationDelegate::applicationWillFinishLaunching()
{
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
}

void TavApplicationDelegate::applicationDidFinishLaunching()
{
    bookmarksController_.rebuildBookmarksMenus();
}

StartResult TavApplicationDelegate::start(const CommandLine &line)
{
    using Status = StartResult::Status;
    applicationWillFinishLaunching();
    applicationDidFinishLaunching();
    if (line.compares)
        return startComparison(line);
    const QList<DocumentCommands::Failure> failures = documentCommands_.open(line.files, false);
    const bool isUnattended = !line.screenshotFile.isNull();
    if (isUnattended && !failures.isEmpty())
        return {Status::Failed, textOf(failures.first())};
    // Without a document the program quits.
    if (documents_.documents().empty() && !documents_.newDocument(false)) {
        if (isUnattended)
            return {Status::Failed, tr("Reading the device registry was cancelled.")};
        if (!failures.isEmpty())
            return {Status::Failed, textOf(failures.first())};
        return {Status::Cancelled};
    }
    return showStarted(line, failures);
}

StartResult TavApplicationDelegate::startComparison(const CommandLine &line)
{
    using Status = StartResult::Status;
    const QStringList files = line.files.isEmpty() ? FileComparison::chooseFiles() : line.files;
    if (files.isEmpty())
        return {Status::Cancelled};
    FileComparison comparison(documents_);
    std::vector<FileComparison::Side> sides;
    for (const QString &file : files) {
        DocumentError error;
        sides.push_back(comparison.sideOf(file, error));
        if (!sides.back().store)
            return {Status::Failed, textOf({file, error})};
    }
    if (!comparison.open(std::move(sides[0]), std::move(sides[1])))
        return {Status::Cancelled};
    return showStarted(line, {});
}

// With at least one document.
StartResult TavApplicationDelegate::showStarted(const CommandLine &line,
                                                const QList<DocumentCommands::Failure> &failures)
{
    using Status = StartResult::Status;
    const bool isUnattended = !line.screenshotFile.isNull();
    if (const QString missing = missingPlace(line); !missing.isNull())
        return {Status::Failed, missing};
    if (isUnattended) // a picture does not wait for what comes later
        mainWindowController()->dataStore()->lookUpDeviceNamesNow();
    goToPlace(line);
    if (isUnattended)
        takePicture(line.screenshotFile);
    for (const auto &document : documents_.documents())
        document->showWindows();
    if (!isUnattended) {
        QMainWindow *const window = mainWindowController()->window();
        documentCommands_.showFailures(failures, window);
        warning_ = std::make_unique<PreferencesWarning>(*window);
    }
    return {Status::Running};
}

void TavApplicationDelegate::openFilesOfOtherCopy(const QStringList &files)
{
    RunLoop::performLater(*this, [this, files] {
        TavWindowController *const front = mainWindowController();
        if (front) {
            front->window()->setWindowState(front->window()->windowState() & ~Qt::WindowMinimized);
            front->showWindow();
        }
        if (files.isEmpty())
            documentCommands_.newDocument();
        else
            documentCommands_.openFiles(files, front ? front->window() : nullptr);
    });
}

TavWindowController *TavApplicationDelegate::mainWindowController() const
{
    return static_cast<TavWindowController *>(documentWindows_.mainWindowController());
}

QString TavApplicationDelegate::missingPlace(const CommandLine &line) const
{
    const TavDataStore &store = *mainWindowController()->dataStore();
    const QStringList &planes = store.registryPlanes();
    if (!line.plane.isNull() && !planes.contains(line.plane))
        return tr("There is no plane %1. Planes are: %2")
            .arg(line.plane, planes.join(QLatin1String(", ")));
    if (!line.selectedPath.isNull() && store.locator().find(line.selectedPath).empty() &&
        store.entriesMatchingRegistryPath(line.selectedPath).entries.isEmpty())
        return tr("There is no entry at %1").arg(line.selectedPath);
    return {};
}

void TavApplicationDelegate::goToPlace(const CommandLine &line)
{
    TavWindowController &window = *mainWindowController();
    TavDataStore &store = *window.dataStore();
    const auto go = [&window, &store, plane = line.plane, path = line.selectedPath] {
        if (TavRegistryEntry *root = store.registryRoot(); root && !plane.isNull())
            window.goToEntryPath(root->entryPathInPlane(plane, 0), true, false);
        if (!path.isNull())
            window.goToRegistryPath(path);
    };
    // Deferred: the window goes to the default bookmark first.
    if (bookmarksController_.defaultBookmarkPath().isNull())
        go();
    else
        QTimer::singleShot(0, &window, go);
}

void TavApplicationDelegate::takePicture(const QString &file)
{
    picture_ = std::make_unique<WindowPicture>(*mainWindowController()->window(), file);
    connect(picture_.get(), &WindowPicture::saved, this, &TavApplicationDelegate::pictureSaved);
    connect(picture_.get(), &WindowPicture::failed, this, &TavApplicationDelegate::pictureFailed);
}

void TavApplicationDelegate::connectCommands(TavDocument &document, TavWindowController &controller)
{
    QMainWindow &window = *controller.window();
    new WindowSizeAutosave(window, PreferenceKeys::explorerWindowSize.toString());
    // Deferred: the command may close its own window.
    const auto command = [&](const char *name, auto action) {
        connect(InterfaceLoader::outlet<QAction>(window, name), &QAction::triggered, this,
                [this, action] { RunLoop::performLater(*this, action); });
    };
    command("newDocumentAction", [this] { documentCommands_.newDocument(); });
    command("openDocumentAction", [this, shown = QPointer(&window)] {
        if (shown)
            documentCommands_.openDocument(*shown);
    });
    const QPointer<Document> saved(&document);
    command("saveDocumentAction", [this, saved] {
        if (saved)
            documentCommands_.saveDocument(*saved);
    });
    command("saveDocumentAsAction", [this, saved] {
        if (saved)
            documentCommands_.saveDocumentAs(*saved);
    });
    command("closeAction", [shown = QPointer(&window)] {
        if (shown)
            shown->close();
    });
    command("quitAction", [this] { documentCommands_.terminate(); });
    command("showPreferencesPanelAction", [this] { defaultsController_.showPreferencesPanel(); });
    command("toggleBookmarksPanelAction", [this] { bookmarksController_.toggleBookmarksPanel(); });
    command("showHelpAction", [this] {
        if (!helpWindow_)
            helpWindow_ = std::make_unique<HelpWindow>();
        helpWindow_->showHelp();
    });
    command("aboutAction", [this] { showAbout(); });

    auto *const recent =
        new RecentDocumentsMenu(*InterfaceLoader::outlet<QMenu>(window, "recentDocumentsMenu"),
                                documentCommands_.recentDocuments());
    connect(recent, &RecentDocumentsMenu::chosen, this,
            [this, shown = QPointer(&window)](const QString &file) {
                RunLoop::performLater(
                    *this, [this, file, shown] { documentCommands_.openFiles({file}, shown); });
            });
    new CompareMenu(*InterfaceLoader::outlet<QMenu>(window, "compareMenu"), document, documents_,
                    documentCommands_);
    for (const char *const saving : {"saveDocumentAction", "saveDocumentAsAction"})
        InterfaceLoader::outlet<QAction>(window, saving)->setEnabled(document.isSnapshot());
    new WindowsMenu(*InterfaceLoader::outlet<QMenu>(window, "windowMenu"), window, documents_);
    bookmarksController_.addBookmarksMenu(*InterfaceLoader::outlet<QMenu>(window, "bookmarksMenu"),
                                          controller);
}

void TavApplicationDelegate::showAbout() const
{
    if (!mainWindowController())
        return;
    AlertBox::show(
        {.title = tr("About Vandrel"),
         .message = QStringLiteral("<b>Vandrel %1</b>").arg(QLatin1String(VANDREL_VERSION)),
         .details = tr("Shows the devices and drivers that the Linux kernel knows of, and how they "
                       "are connected. It only reads and never changes anything."),
         .window = mainWindowController()->window(),
         .kind = Alert::Kind::About});
}
