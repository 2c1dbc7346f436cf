#pragma once

#include <QJsonValue>
#include <QObject>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDialog;
class QSpinBox;
class QTabWidget;
class RegistryService;
class TavBookmarksController;

// The user's settings: what they are unless stored, and the panel that changes them. A change
// applies to documents and windows opened afterwards.
class TavDefaultsController : public QObject
{
    Q_OBJECT
public:
    // Registers the defaults. The service must outlive the controller.
    explicit TavDefaultsController(RegistryService &service);
    ~TavDefaultsController() override;
    // The one that exists.
    static TavDefaultsController &sharedInstance();

    void showPreferencesPanel();
    QDialog *preferencesWindow() const { return preferencesWindow_.get(); } // null until shown
    QComboBox *defaultBookmarkPopUp() const { return defaultBookmarkPopUp_; }

Q_SIGNALS:
    void panelLoaded();
    void defaultBookmarkPopUpChanged();

private:
    void _registerDefaults();
    void loadPanel();
    void connectOutlets();
    void connectControls();
    void _syncPreferencesPanel();
    void syncPlanePopUp();
    void syncFindOptions();
    QStringList _readRegistryPlanes() const; // null when there is no registry
    void userPreferenceChanged(const QObject *sender);
    void _saveFindOptions();
    void didSelectTabViewItem(int index);

    RegistryService &service_;
    std::unique_ptr<QDialog> preferencesWindow_;
    QTabWidget *preferencesTabView_ = nullptr;
    QButtonGroup *defaultViewMatrix_ = nullptr;
    QComboBox *defaultPlanePopUp_ = nullptr;
    QComboBox *defaultBookmarkPopUp_ = nullptr;
    QCheckBox *filteredFindCheckbox_ = nullptr;
    QButtonGroup *findOptionsMatrix_ = nullptr; // a box's number in it is its bit
    QCheckBox *defaultAutoupdateCheckbox_ = nullptr;
    QCheckBox *defaultPolledUpdateCheckbox_ = nullptr;
    QSpinBox *defaultPollIntervalField_ = nullptr;
    std::unique_ptr<QObject> planeKeys_;
    bool isSyncing_ = false;
};
