// SPDX-License-Identifier: Apache-2.0
#include "app/Startup.h"

#include "platform/desktop/AlertBox.h"
#include "platform/desktop/DesktopRecentFiles.h"
#include "platform/desktop/FileRevealer.h"
#include "platform/host/DesktopServices.h"
#include "platform/preferences/PreferencesStore.h"

#include <QApplication>
#include <QIcon>
#include <QTranslator>

namespace {
// English comes first: it holds the texts that the code names by keys.
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
    // No display name: Qt would add it to the window titles.
    QApplication::setApplicationName(QStringLiteral("Vandrel"));
    QApplication::setApplicationVersion(QStringLiteral(VANDREL_VERSION));
    QApplication::setDesktopFileName(PreferencesStore::applicationIdentifier());
    installTranslations();
    QApplication::setWindowIcon(QIcon::fromTheme(PreferencesStore::applicationIdentifier()));
    DesktopServices &services = DesktopServices::instance();
    services.beep = QApplication::beep;
    services.presentAlert = AlertBox::present;
    services.noteRecentFile = [](const QString &file, const QString &mimeType) {
        DesktopRecentFiles().add(file, mimeType);
    };
    services.revealFile = [](const QString &file) { FileRevealer::reveal(file); };
}
