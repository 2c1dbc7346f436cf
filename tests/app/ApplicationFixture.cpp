// SPDX-License-Identifier: Apache-2.0
#include "ApplicationFixture.h"

#include "app/CommandLine.h"
#include "app/Startup.h"
#include "platform/desktop/Theme.h"
#include "platform/host/DesktopServices.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "tests/support/EventLoop.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTest>

namespace {
template<class Window>
Window *shownWindow()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *const window = qobject_cast<Window *>(widget); window && window->isVisible())
            return window;
    }
    return nullptr;
}
} // namespace

ApplicationFixture::ApplicationFixture()
{
    QApplication::setQuitOnLastWindowClosed(false);
    PreferencesStore::setFolder(path("settings"));
    applyTheme(Theme::Light);
    Startup::setUpApplication();
    DesktopServices::instance().beep = nullptr;
    DesktopServices::instance().noteRecentFile = nullptr;
}

ApplicationFixture::~ApplicationFixture()
{
    delegate_.reset();
    DesktopServices::instance().presentAlert = nullptr;
    TavRegistryEntry::setPropertyClass(TavRegistryProperty::staticPropertyClass());
}

void ApplicationFixture::launch(const QStringList &files)
{
    auto service = std::make_unique<FakeLiveService>();
    service_ = service.get();
    TreeBuilder registry(*service);
    if (hasRegistry_)
        registry
            .plane("DxService", R"(
            Root
              Host
                bus
                  disk@0
                  disk@1)")
            .plane("DxPower", R"(
            Root
              Host
                supply)");
    delegate_ = std::make_unique<TavApplicationDelegate>(std::move(service));
    CommandLine line;
    line.files = files;
    const StartResult result = delegate_->start(line);
    ASSERT_TRUE(result.isRunning()) << qPrintable(result.message);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(delegate_->mainWindowController()->window()));
    turnEventLoop();
}

void ApplicationFixture::quit()
{
    delegate_.reset();
    PreferencesStore::setFolder(path("settings")); // closes the stores: the next run reads again
}

TavDocument &ApplicationFixture::document(std::size_t number) const
{
    return static_cast<TavDocument &>(*delegate_->documents().documents().at(number));
}

TavWindowController &ApplicationFixture::window(std::size_t document, std::size_t number) const
{
    return static_cast<TavWindowController &>(
        *this->document(document).windowControllers().at(number));
}

QString ApplicationFixture::selectedPath(std::size_t document) const
{
    return window(document).registryPathForSelectedEntry();
}

void ApplicationFixture::closeWindow(std::size_t document, std::size_t number) const
{
    window(document, number).window()->close();
    turnEventLoop();
}

QStringList ApplicationFixture::titles() const
{
    QStringList titles;
    for (const auto &document : delegate_->documents().documents()) {
        for (const auto &controller : document->windowControllers())
            titles.append(
                controller->documentWindow()->windowTitle().section(QStringLiteral(" — "), 0, 0));
    }
    return titles;
}

void ApplicationFixture::trigger(const char *action, std::size_t document) const
{
    outlet<QAction>(window(document).window(), action)->trigger();
    turnEventLoop();
}

void ApplicationFixture::turnEventLoop()
{
    // Several turns, because deferred work may defer more work.
    for (int i = 0; i < 4; ++i)
        turnEventLoopFor(5);
}

QMessageBox *ApplicationFixture::alert() const
{
    turnEventLoop();
    return shownWindow<QMessageBox>();
}

std::string ApplicationFixture::alertText() const
{
    const QMessageBox *const box = alert();
    return box ? (box->text() + u'\n' + box->informativeText()).toStdString() : std::string();
}

void ApplicationFixture::answer(const char *button) const
{
    const QMessageBox *const box = alert();
    ASSERT_TRUE(box) << button;
    for (QAbstractButton *candidate : box->buttons()) {
        if (candidate->text().remove(u'&') == QString::fromUtf8(button))
            candidate->click();
    }
    turnEventLoop();
}

void ApplicationFixture::chooseFile(const QString &file) const
{
    auto *const dialog = shownWindow<QFileDialog>();
    ASSERT_TRUE(dialog);
    dialog->setOption(QFileDialog::DontConfirmOverwrite); // its question would block
    outlet<QLineEdit>(dialog, "fileNameEdit")->setText(file);
    QMetaObject::invokeMethod(dialog, "accept");
    turnEventLoop();
}

void ApplicationFixture::write(const char *name, const QByteArray &bytes) const
{
    QFile target(path(name));
    ASSERT_TRUE(target.open(QIODevice::WriteOnly));
    target.write(bytes);
}

QByteArray ApplicationFixture::contentOf(const char *name) const
{
    QFile source(path(name));
    return source.open(QIODevice::ReadOnly) ? source.readAll() : QByteArray();
}
