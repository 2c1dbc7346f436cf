// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/TavApplicationDelegate.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/TreeBuilder.h"

#include <QMainWindow>
#include <QTemporaryDir>
#include <gmock/gmock.h>

class QMessageBox;

// The program with a scripted registry and temporary settings, driven through its windows.
class ApplicationFixture : public testing::Test
{
protected:
    ApplicationFixture();
    ~ApplicationFixture() override;

    // A run of the program. Settings persist for the next one.
    void launch(const QStringList &files = {});
    void quit();

    TavWindowController &window(std::size_t document = 0, std::size_t number = 0) const;
    std::size_t documentCount() const { return delegate_->documents().documents().size(); }
    TavDocument &document(std::size_t number = 0) const;
    QString selectedPath(std::size_t document = 0) const;
    void closeWindow(std::size_t document = 0, std::size_t number = 0) const;
    QStringList titles() const; // up to the first dash
    void trigger(const char *action, std::size_t document = 0) const;
    static void turnEventLoop();

    QMessageBox *alert() const;    // the shown one, or null
    std::string alertText() const; // its message and details
    void answer(const char *button) const;
    void chooseFile(const QString &file) const; // in the shown file dialog

    QString path(const char *name) const { return folder_.filePath(QString::fromUtf8(name)); }
    void write(const char *name, const QByteArray &bytes) const;
    QByteArray contentOf(const char *name) const;

    template<class Outlet>
    static Outlet *outlet(const QObject *root, const char *name)
    {
        return InterfaceLoader::outlet<Outlet>(*root, name);
    }

    QTemporaryDir folder_;
    FakeLiveService *service_ = nullptr; // the delegate's
    bool hasRegistry_ = true;
    std::unique_ptr<TavApplicationDelegate> delegate_;
};
