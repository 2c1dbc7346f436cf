// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/SessionEnd.h"
#include "app/StoredFormats.h"
#include "app/TavBookmarksController.h"
#include "app/TavDefaultsController.h"
#include "platform/desktop/DocumentCommands.h"
#include "platform/desktop/DocumentWindows.h"
#include "store/TavDocumentController.h"

struct CommandLine;
class HelpWindow;
class PreferencesWarning;
class QMainWindow;
class WindowPicture;

struct StartResult
{
    enum class Status : quint8 { Running, Cancelled, Failed };

    Status status;
    QString message = {}; // for the user; null unless Failed

    bool isRunning() const { return status == Status::Running; }
};

// Starts the program: the steps before the first document, the documents of the command line, and
// the commands that are not for a single window.
class TavApplicationDelegate : public QObject
{
    Q_OBJECT
public:
    // Needs no display. Null, with a message for the user, when there is no registry.
    static std::unique_ptr<RegistryService> openRegistry(const CommandLine &line, QString *error);

    // Registers the preferences' defaults.
    explicit TavApplicationDelegate(std::unique_ptr<RegistryService> service);
    ~TavApplicationDelegate() override;

    void applicationWillFinishLaunching();
    void applicationDidFinishLaunching();
    // Shows what the command line asks for, before or within the event loop. Fails when the plane,
    // the entry, or a file for a picture is missing; Cancelled: the user cancelled reading the
    // registry.
    StartResult start(const CommandLine &line);
    // Opens the files, or a window without any, and activates it.
    void openFilesOfOtherCopy(const QStringList &files);

    TavDocumentController &documents() { return documents_; }
    DocumentCommands &documentCommands() { return documentCommands_; }
    TavDefaultsController &defaultsController() { return defaultsController_; }
    TavBookmarksController &bookmarksController() { return bookmarksController_; }
    TavWindowController *mainWindowController() const; // null without a window

Q_SIGNALS:
    void pictureSaved();
    void pictureFailed(const QString &message);

private:
    StartResult startComparison(const CommandLine &line);
    StartResult showStarted(const CommandLine &line,
                            const QList<DocumentCommands::Failure> &failures);
    QString missingPlace(const CommandLine &line) const; // a message; null: nothing is missing
    void goToPlace(const CommandLine &line);
    void takePicture(const QString &file);
    void connectCommands(TavDocument &document, TavWindowController &controller);
    void showAbout() const;

    // Each uses those above it.
    std::unique_ptr<RegistryService> service_;
    TavDefaultsController defaultsController_;
    TavDocumentController documents_;
    DocumentCommands documentCommands_;
    DocumentWindows documentWindows_;
    TavBookmarksController bookmarksController_;
    StoredFormats storedFormats_;
    SessionEnd sessionEnd_;
    std::unique_ptr<HelpWindow> helpWindow_;
    std::unique_ptr<PreferencesWarning> warning_;
    std::unique_ptr<WindowPicture> picture_;
};
