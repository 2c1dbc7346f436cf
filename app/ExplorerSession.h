#pragma once

#include <QObject>

struct CommandLine;
class PreferencesWarning;
class RegistryService;
class TavDataStore;
class TavWindowController;
class WindowPicture;

// One live registry and its explorer window.
class ExplorerSession : public QObject
{
    Q_OBJECT
public:
    // Needs no display. Null, with a message for the user, when there is no registry.
    static std::unique_ptr<RegistryService> openRegistry(const CommandLine &line, QString *error);

    explicit ExplorerSession(std::unique_ptr<RegistryService> service);
    ~ExplorerSession() override;

    // Captures the registry and shows the window as asked. False, with a message for the user, when
    // what is asked for is not there; then nothing is shown.
    bool start(const CommandLine &line, QString *error);

    TavWindowController *windowController() const { return windowController_.get(); }

Q_SIGNALS:
    void pictureSaved();
    void pictureFailed(const QString &message);

private:
    void applyUpdatePreferences();
    bool check(const CommandLine &line, QString *error) const;

    // Each uses those before it.
    std::unique_ptr<RegistryService> service_;
    std::shared_ptr<TavDataStore> dataStore_;
    std::unique_ptr<TavWindowController> windowController_;
    std::unique_ptr<PreferencesWarning> warning_;
    std::unique_ptr<WindowPicture> picture_;
};
