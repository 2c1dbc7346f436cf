#include "app/ExplorerSession.h"

#include "app/CommandLine.h"
#include "app/PreferencesWarning.h"
#include "app/WindowPicture.h"
#include "explorer/TavWindowController.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/PreferencesStore.h"
#include "store/TavDataStore.h"

#include <QMainWindow>

std::unique_ptr<RegistryService> ExplorerSession::openRegistry(const CommandLine &line,
                                                               QString *error)
{
    return LinuxRegistryService::create(line.sysfsRoot, error);
}

ExplorerSession::ExplorerSession(std::unique_ptr<RegistryService> service)
    : service_(std::move(service))
{}

ExplorerSession::~ExplorerSession() = default;

bool ExplorerSession::start(const CommandLine &line, QString *error)
{
    dataStore_ = TavDataStore::initFromDxRegistry(*service_);
    if (!check(line, error))
        return false;
    applyUpdatePreferences();
    windowController_ = std::make_unique<TavWindowController>(dataStore_);
    if (TavRegistryEntry *root = dataStore_->registryRoot(); root && !line.plane.isNull())
        windowController_->goToEntryPath(root->entryPathInPlane(line.plane, 0), true, false);
    if (!line.selectedPath.isNull())
        windowController_->goToRegistryPath(line.selectedPath);
    QMainWindow &window = *windowController_->window();
    if (!line.screenshotFile.isNull()) {
        picture_ = std::make_unique<WindowPicture>(window, line.screenshotFile);
        connect(picture_.get(), &WindowPicture::saved, this, &ExplorerSession::pictureSaved);
        connect(picture_.get(), &WindowPicture::failed, this, &ExplorerSession::pictureFailed);
    }
    window.show();
    if (!picture_)
        warning_ = std::make_unique<PreferencesWarning>(window);
    return true;
}

void ExplorerSession::applyUpdatePreferences()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    dataStore_->setAutoupdate(preferences.flag(QStringLiteral("Autoupdate")));
    dataStore_->setPolledUpdate(preferences.flag(QStringLiteral("PolledUpdate")));
    dataStore_->setPollInterval(
        static_cast<double>(preferences.integer(QStringLiteral("PolledUpdateInterval"))));
}

bool ExplorerSession::check(const CommandLine &line, QString *error) const
{
    const QStringList &planes = dataStore_->registryPlanes();
    if (!line.plane.isNull() && !planes.contains(line.plane)) {
        *error = tr("There is no plane %1. Planes are: %2")
                     .arg(line.plane, planes.join(QLatin1String(", ")));
        return false;
    }
    if (!line.selectedPath.isNull() &&
        dataStore_->entriesMatchingRegistryPath(line.selectedPath).entries.isEmpty()) {
        *error = tr("There is no entry at %1").arg(line.selectedPath);
        return false;
    }
    return true;
}
