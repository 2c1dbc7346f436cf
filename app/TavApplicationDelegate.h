#pragma once

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

// Starts the program: the steps before the first document, then the documents that the command line
// asks for, and the commands that are not a single window's.
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
    // Shows what is asked for, within the event loop or before it. False, with a message for the
    // user, when the plane or entry asked for is not there, or a picture of a file cannot be made;
    // with none when the user has cancelled the reading of the registry.
    bool start(const CommandLine &line, QString *error);
    // Comes to the front with them.
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
    bool goWhereAsked(const CommandLine &line, QString *error);
    void takePicture(const QString &file);
    void connectCommands(TavDocument &document, TavWindowController &controller);
    void showAbout() const;

    // Each uses those before it.
    std::unique_ptr<RegistryService> service_;
    TavDefaultsController defaultsController_;
    TavDocumentController documents_;
    DocumentCommands documentCommands_;
    DocumentWindows documentWindows_;
    TavBookmarksController bookmarksController_;
    StoredFormats storedFormats_;
    std::unique_ptr<HelpWindow> helpWindow_;
    std::unique_ptr<PreferencesWarning> warning_;
    std::unique_ptr<WindowPicture> picture_;
};
