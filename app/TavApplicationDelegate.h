#pragma once

#include "store/TavDocumentController.h"

struct CommandLine;
class DocumentWindows;
class PreferencesWarning;
class QAction;
class QMainWindow;
class TavWindowController;
class WindowPicture;

// Starts the program: the steps before the first document, then the documents that the command line
// asks for, and the commands that belong to no window.
class TavApplicationDelegate : public QObject
{
    Q_OBJECT
public:
    // Needs no display. Null, with a message for the user, when there is no registry.
    static std::unique_ptr<RegistryService> openRegistry(const CommandLine &line, QString *error);

    explicit TavApplicationDelegate(std::unique_ptr<RegistryService> service);
    ~TavApplicationDelegate() override;

    // Shows what is asked for. False, with a message for the user, when it is not there.
    bool start(const CommandLine &line, QString *error);

    TavDocumentController &documents() { return documents_; }
    TavWindowController *mainWindowController() const; // of the window last used, or null

Q_SIGNALS:
    void pictureSaved();
    void pictureFailed(const QString &message);

private:
    void applicationWillFinishLaunching();
    bool goWhereAsked(const CommandLine &line, QString *error);
    void takePicture(const QString &file);
    void connectCommands(QMainWindow &window);
    void showAbout();

    // Each uses those before it.
    std::unique_ptr<RegistryService> service_;
    TavDocumentController documents_;
    std::unique_ptr<DocumentWindows> documentWindows_;
    std::unique_ptr<PreferencesWarning> warning_;
    std::unique_ptr<WindowPicture> picture_;
};
