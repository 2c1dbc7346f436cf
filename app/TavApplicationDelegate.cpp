#include "app/TavApplicationDelegate.h"

#include "app/CommandLine.h"
#include "app/PreferencesWarning.h"
#include "app/WindowPicture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "explorer/TavWindowController.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/desktop/DocumentWindows.h"
#include "platform/desktop/InterfaceLoader.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QAction>
#include <QApplication>
#include <QMainWindow>
#include <QMessageBox>

std::unique_ptr<RegistryService> TavApplicationDelegate::openRegistry(const CommandLine &line,
                                                                      QString *error)
{
    return LinuxRegistryService::create(line.sysfsRoot, error);
}

TavApplicationDelegate::TavApplicationDelegate(std::unique_ptr<RegistryService> service)
    : service_(std::move(service))
    , documents_(*service_)
    , documentWindows_(std::make_unique<DocumentWindows>(documents_))
{
    documents_.setWindowControllerFactory(
        [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    connect(&documents_, &DocumentController::windowControllerAdded, this,
            [this](Document &, DocumentWindowController &controller) {
                connectCommands(*static_cast<TavWindowController &>(controller).window());
            });
    connect(&TavFormatController::sharedInstance(), &TavFormatController::dataViewOptionsChanged,
            &documents_, &TavDocumentController::dataViewOptionsChanged);
    connect(&documents_, &DocumentController::terminationRequested, &QApplication::quit);
}

TavApplicationDelegate::~TavApplicationDelegate() = default;

// Every property tree read from now on can be shown.
void TavApplicationDelegate::applicationWillFinishLaunching()
{
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
}

bool TavApplicationDelegate::start(const CommandLine &line, QString *error)
{
    applicationWillFinishLaunching();
    Document &document = documents_.newDocument(false);
    if (!goWhereAsked(line, error))
        return false;
    if (!line.screenshotFile.isNull())
        takePicture(line.screenshotFile);
    document.showWindows();
    if (!picture_)
        warning_ = std::make_unique<PreferencesWarning>(*mainWindowController()->window());
    return true;
}

TavWindowController *TavApplicationDelegate::mainWindowController() const
{
    TavWindowController *last = nullptr;
    for (const auto &document : documents_.documents()) {
        for (const auto &controller : document->windowControllers()) {
            last = static_cast<TavWindowController *>(controller.get());
            if (last->window()->isActiveWindow())
                return last;
        }
    }
    return last;
}

bool TavApplicationDelegate::goWhereAsked(const CommandLine &line, QString *error)
{
    TavWindowController &window = *mainWindowController();
    TavDataStore &store = *window.dataStore();
    const QStringList &planes = store.registryPlanes();
    if (!line.plane.isNull() && !planes.contains(line.plane)) {
        *error = tr("There is no plane %1. Planes are: %2")
                     .arg(line.plane, planes.join(QLatin1String(", ")));
        return false;
    }
    if (!line.selectedPath.isNull() &&
        store.entriesMatchingRegistryPath(line.selectedPath).entries.isEmpty()) {
        *error = tr("There is no entry at %1").arg(line.selectedPath);
        return false;
    }
    if (TavRegistryEntry *root = store.registryRoot(); root && !line.plane.isNull())
        window.goToEntryPath(root->entryPathInPlane(line.plane, 0), true, false);
    if (!line.selectedPath.isNull())
        window.goToRegistryPath(line.selectedPath);
    return true;
}

void TavApplicationDelegate::takePicture(const QString &file)
{
    picture_ = std::make_unique<WindowPicture>(*mainWindowController()->window(), file);
    connect(picture_.get(), &WindowPicture::saved, this, &TavApplicationDelegate::pictureSaved);
    connect(picture_.get(), &WindowPicture::failed, this, &TavApplicationDelegate::pictureFailed);
}

void TavApplicationDelegate::connectCommands(QMainWindow &window)
{
    const auto connectAction = [&](const char *name, auto command) {
        connect(InterfaceLoader::outlet<QAction>(window, name), &QAction::triggered, this, command);
    };
    connectAction("newDocumentAction", [this] { documents_.newDocument(); });
    connectAction("closeAction", [&window] { window.close(); });
    connectAction("quitAction", [] { QApplication::quit(); });
    connectAction("aboutAction", [this] { showAbout(); });
    for (const char *name :
         {"openDocumentAction", "saveDocumentAction", "saveDocumentAsAction", "showHelpAction",
          "showPreferencesPanelAction", "toggleBookmarksPanelAction"})
        InterfaceLoader::outlet<QAction>(window, name)->setVisible(false); // not there yet
}

void TavApplicationDelegate::showAbout()
{
    auto *const about = new QMessageBox(mainWindowController()->window());
    about->setWindowTitle(tr("About Vandrel"));
    about->setIconPixmap(QGuiApplication::windowIcon().pixmap(64, 64));
    about->setText(QStringLiteral("<b>Vandrel %1</b>").arg(QLatin1String(VANDREL_VERSION)));
    about->setInformativeText(
        tr("Shows the devices and drivers that the Linux kernel knows of, and how they hang "
           "together. It only reads and never changes anything."));
    about->setAttribute(Qt::WA_DeleteOnClose);
    about->open();
}
