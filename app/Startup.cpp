#include "app/Startup.h"

#include "display/TavPropertyOutlineItem.h"
#include "platform/PreferencesStore.h"
#include "platform/SystemBeep.h"

#include <QApplication>
#include <QIcon>

void Startup::registerDefaults()
{
    QJsonObject defaults = TavPropertyOutlineItem::defaultsToRegister();
    defaults.insert(QStringLiteral("DefaultPlane"), QStringLiteral("DxService"));
    defaults.insert(QStringLiteral("DefaultView"), QStringLiteral("outline"));
    defaults.insert(QStringLiteral("ShowNumPaths"), QStringLiteral("no"));
    defaults.insert(QStringLiteral("Autoupdate"), QStringLiteral("yes"));
    defaults.insert(QStringLiteral("PolledUpdate"), QStringLiteral("no"));
    defaults.insert(QStringLiteral("PolledUpdateInterval"), 30);
    PreferencesStore::standard().registerDefaults(defaults);
}

void Startup::setUpApplication(Theme theme)
{
    // No display name: the system would add it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("Vandrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANDREL_VERSION));
    QApplication::setDesktopFileName(PreferencesStore::applicationIdentifier());
    applyTheme(theme);
    QApplication::setWindowIcon(QIcon::fromTheme(PreferencesStore::applicationIdentifier()));
    SystemBeep::setSounder([] { QApplication::beep(); });
    registerDefaults();
}
