#include "app/Startup.h"

#include "platform/desktop/AlertBox.h"
#include "platform/desktop/FileRevealer.h"
#include "platform/host/Alert.h"
#include "platform/host/FileManager.h"
#include "platform/host/SystemBeep.h"
#include "platform/preferences/PreferencesStore.h"

#include <QApplication>
#include <QIcon>
#include <QTranslator>

namespace {
// English first: it has the texts that have no English of their own in the code.
void installTranslations()
{
    const auto install = [](auto... arguments) {
        auto *const translator = new QTranslator(qApp);
        if (translator->load(arguments...))
            QCoreApplication::installTranslator(translator);
        else
            delete translator;
    };
    const QString folder = QStringLiteral(":/translations");
    install(QStringLiteral("vandrel_en"), folder);
    install(QLocale(), QStringLiteral("vandrel"), QStringLiteral("_"), folder);
}
} // namespace

void Startup::setUpApplication()
{
    // No display name: the system would add it to the windows' titles.
    QApplication::setApplicationName(QStringLiteral("Vandrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANDREL_VERSION));
    QApplication::setDesktopFileName(PreferencesStore::applicationIdentifier());
    installTranslations();
    QApplication::setWindowIcon(QIcon::fromTheme(PreferencesStore::applicationIdentifier()));
    SystemBeep::setSounder([] { QApplication::beep(); });
    AlertPanel::setPresenter(AlertBox::present);
    FileManager::setRevealer([](const QString &file) { FileRevealer::reveal(file); });
}
