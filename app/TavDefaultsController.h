// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QJsonValue>
#include <QObject>

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QDialog;
class QDoubleSpinBox;
class QSpinBox;
class QTabWidget;
class RegistryService;
class TavBookmarksController;

// The panel for the user's settings, and their defaults. The theme applies immediately; other
// changes apply to documents and windows opened afterwards.
class TavDefaultsController : public QObject
{
    Q_OBJECT
public:
    // Registers the defaults. The service must outlive the controller.
    explicit TavDefaultsController(RegistryService &service);
    ~TavDefaultsController() override;
    // The existing instance.
    static TavDefaultsController &sharedInstance();

    void _registerDefaults();
    void showPreferencesPanel();
    void _syncPreferencesPanel();
    QStringList _readRegistryPlanes() const; // empty without a registry
    void userPreferenceChanged(const QObject *sender);
    void _saveFindOptions();
    void tabViewDidSelectTabViewItem(int index);
    QDialog *preferencesWindow() const
    {
        return preferencesWindow_.get();
    } // null until first shown
    QComboBox *defaultBookmarkPopUp() const { return defaultBookmarkPopUp_; }

Q_SIGNALS:
    void panelLoaded();
    void defaultBookmarkPopUpChanged();

private:
    void loadPanel();
    void connectOutlets();
    void connectControls();
    void syncControls();
    void syncPlanePopUp();
    void syncFindOptions();
    void syncPollInterval();
    void syncWatching();

    RegistryService &service_;
    std::unique_ptr<QDialog> preferencesWindow_;
    QTabWidget *preferencesTabView_ = nullptr;
    QButtonGroup *defaultViewMatrix_ = nullptr;
    QComboBox *defaultPlanePopUp_ = nullptr;
    QComboBox *defaultBookmarkPopUp_ = nullptr;
    QComboBox *themePopUp_ = nullptr;
    QCheckBox *filteredFindCheckbox_ = nullptr;
    QButtonGroup *findOptionsMatrix_ = nullptr; // a box's id is its bit
    QCheckBox *defaultAutoupdateCheckbox_ = nullptr;
    QCheckBox *defaultPolledUpdateCheckbox_ = nullptr;
    QSpinBox *defaultPollIntervalField_ = nullptr;
    QDoubleSpinBox *followIntervalField_ = nullptr;
    QSpinBox *recentDurationField_ = nullptr;
    std::unique_ptr<QObject> planeKeys_;
    bool isSyncing_ = false;
    NotificationCenter::Observation observation_;
};
