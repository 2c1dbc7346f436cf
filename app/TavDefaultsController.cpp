// SPDX-License-Identifier: Apache-2.0
#include "app/TavDefaultsController.h"

#include "app/PopUpItem.h"
#include "app/TavBookmarksController.h"
#include "model/FindOptions.h"
#include "model/RegistryHandle.h"
#include "model/RegistryOrder.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/CloseKeys.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QSpinBox>
#include <QTabWidget>
#include <cmath>

namespace {
constexpr int outlineTag = 0;
constexpr int browserTag = 1;

static_assert(PreferenceKeys::findOptions.defaultValue ==
              FindOptions(FindOption::Name | FindOption::Inheritance).toInt());

TavDefaultsController *defaultsInstance = nullptr;
} // namespace

TavDefaultsController::TavDefaultsController(RegistryService &service)
    : service_(service)
{
    Q_ASSERT(!defaultsInstance);
    defaultsInstance = this;
    _registerDefaults();
    observation_ = NotificationCenter::defaultCenter().observe(
        PreferencesStore::didMergeNotification(), &PreferencesStore::standard(),
        [this](const auto &) {
            if (preferencesWindow_)
                syncControls();
        });
}

TavDefaultsController::~TavDefaultsController()
{
    defaultsInstance = nullptr;
}

TavDefaultsController &TavDefaultsController::sharedInstance()
{
    Q_ASSERT(defaultsInstance);
    return *defaultsInstance;
}

void TavDefaultsController::_registerDefaults()
{
    PreferencesStore::standard().registerDefaults(PreferenceKeys::defaults());
}

void TavDefaultsController::showPreferencesPanel()
{
    if (!preferencesWindow_)
        loadPanel();
    _syncPreferencesPanel();
    preferencesWindow_->show();
    preferencesWindow_->raise();
    preferencesWindow_->activateWindow();
}

void TavDefaultsController::loadPanel()
{
    preferencesWindow_.reset(qobject_cast<QDialog *>(
        InterfaceLoader().load(QStringLiteral("PreferencesPanel")).release()));
    connectOutlets();
    connectControls();
    CloseKeys::addTo(*preferencesWindow_);
    preferencesWindow_->setFixedSize(preferencesWindow_->sizeHint());
    Q_EMIT panelLoaded();
}

void TavDefaultsController::connectOutlets()
{
    const auto outlet = [this](auto *&field, const char *name) {
        field = InterfaceLoader::outlet<std::remove_reference_t<decltype(*field)>>(
            *preferencesWindow_, name);
    };
    const auto number = [&](QButtonGroup &matrix, const char *name, int tag) {
        matrix.setId(InterfaceLoader::outlet<QAbstractButton>(*preferencesWindow_, name), tag);
    };
    outlet(preferencesTabView_, "preferencesTabView");
    outlet(defaultViewMatrix_, "defaultViewMatrix");
    number(*defaultViewMatrix_, "defaultViewOutlineCell", outlineTag);
    number(*defaultViewMatrix_, "defaultViewBrowserCell", browserTag);
    outlet(defaultPlanePopUp_, "defaultPlanePopUp");
    outlet(defaultBookmarkPopUp_, "defaultBookmarkPopUp");
    PopUpItem::addMarker(*defaultBookmarkPopUp_);
    outlet(themePopUp_, "themePopUp");
    for (int item = 0; const char *theme : {"system", "light", "dark"})
        themePopUp_->setItemData(item++, QString::fromLatin1(theme));
    outlet(filteredFindCheckbox_, "filteredFindCheckbox");
    outlet(findOptionsMatrix_, "findOptionsMatrix");
    const std::pair<const char *, FindOption> findCheckboxes[] = {
        {"findNameCheckbox", FindOption::Name},
        {"findClassCheckbox", FindOption::Class},
        {"findInheritanceCheckbox", FindOption::Inheritance},
        {"findBundleIDCheckbox", FindOption::BundleID},
        {"findKeysCheckbox", FindOption::Keys},
        {"findValuesCheckbox", FindOption::Values},
        {"findSpecialCheckbox", FindOption::Special},
        {"findShownValuesCheckbox", FindOption::ShownValues},
    };
    for (const auto &[name, option] : findCheckboxes)
        number(*findOptionsMatrix_, name, static_cast<int>(option));
    outlet(defaultAutoupdateCheckbox_, "defaultAutoupdateCheckbox");
    outlet(defaultPolledUpdateCheckbox_, "defaultPolledUpdateCheckbox");
    outlet(defaultPollIntervalField_, "defaultPollIntervalField");
    outlet(followIntervalField_, "followIntervalField");
    outlet(recentDurationField_, "recentDurationField");
}

void TavDefaultsController::connectControls()
{
    const auto act = [this](auto *control, auto signal) {
        connect(control, signal, this, [this, control] { userPreferenceChanged(control); });
    };
    act(defaultViewMatrix_, &QButtonGroup::idClicked);
    act(defaultPlanePopUp_, &QComboBox::activated);
    act(themePopUp_, &QComboBox::activated);
    act(filteredFindCheckbox_, &QCheckBox::clicked);
    act(findOptionsMatrix_, &QButtonGroup::idClicked);
    act(defaultAutoupdateCheckbox_, &QCheckBox::clicked);
    act(defaultPolledUpdateCheckbox_, &QCheckBox::clicked);
    act(defaultPollIntervalField_, &QSpinBox::valueChanged);
    act(followIntervalField_, &QDoubleSpinBox::valueChanged);
    act(recentDurationField_, &QSpinBox::valueChanged);
    connect(defaultBookmarkPopUp_, &QComboBox::activated, this,
            &TavDefaultsController::defaultBookmarkPopUpChanged);
    connect(preferencesTabView_, &QTabWidget::currentChanged, this,
            &TavDefaultsController::tabViewDidSelectTabViewItem);
}

void TavDefaultsController::_syncPreferencesPanel()
{
    const QScopedValueRollback syncing(isSyncing_, true);
    const PreferencesStore &preferences = PreferencesStore::standard();
    const QString tab = preferences.string(PreferenceKeys::preferencesTab);
    for (int i = 0; i < preferencesTabView_->count(); ++i) {
        if (preferencesTabView_->widget(i)->objectName() == tab)
            preferencesTabView_->setCurrentIndex(i);
    }
    syncControls();
}

// All but the tab, which each copy of the program keeps for itself.
void TavDefaultsController::syncControls()
{
    const QScopedValueRollback syncing(isSyncing_, true);
    const PreferencesStore &preferences = PreferencesStore::standard();
    const bool isOutline =
        preferences.string(PreferenceKeys::defaultView) == QLatin1String("outline");
    defaultViewMatrix_->button(isOutline ? outlineTag : browserTag)->setChecked(true);
    syncPlanePopUp();
    themePopUp_->setCurrentIndex(themePopUp_->findData(preferences.string(PreferenceKeys::theme)));
    filteredFindCheckbox_->setChecked(preferences.flag(PreferenceKeys::filteredFind));
    syncFindOptions();
    defaultAutoupdateCheckbox_->setChecked(preferences.flag(PreferenceKeys::autoupdate));
    defaultPolledUpdateCheckbox_->setChecked(preferences.flag(PreferenceKeys::polledUpdate));
    syncPollInterval();
    syncWatching();
}

void TavDefaultsController::syncWatching()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    const double seconds =
        static_cast<double>(preferences.integer(PreferenceKeys::followInterval)) / 1000;
    if (std::abs(followIntervalField_->value() - seconds) > 0.05)
        followIntervalField_->setValue(seconds);
    const auto recent = static_cast<int>(
        std::clamp<qint64>(preferences.integer(PreferenceKeys::recentDuration),
                           recentDurationField_->minimum(), recentDurationField_->maximum()));
    if (recentDurationField_->value() != recent)
        recentDurationField_->setValue(recent);
}

void TavDefaultsController::syncPollInterval()
{
    using Limits = std::numeric_limits<int>;
    const qint64 stored = PreferencesStore::standard().integer(PreferenceKeys::pollInterval);
    const int interval = static_cast<int>(std::clamp<qint64>(stored, Limits::min(), Limits::max()));
    if (defaultPollIntervalField_->value() !=
        interval) // setting it would discard unfinished typing
        defaultPollIntervalField_->setValue(interval);
}

void TavDefaultsController::syncPlanePopUp()
{
    const QString servicePlane = PreferenceKeys::defaultPlane.defaultValue;
    QStringList planes = _readRegistryPlanes();
    planes.removeAll(servicePlane);
    planes.prepend(servicePlane);
    defaultPlanePopUp_->clear();
    defaultPlanePopUp_->addItems(planes);
    planeKeys_ = std::make_unique<QObject>();
    for (int i = 0; i < planes.size() && i < 9; ++i) {
        auto *const key =
            new QShortcut(QKeySequence(QStringLiteral("Ctrl+%1").arg(i + 1)), defaultPlanePopUp_);
        connect(planeKeys_.get(), &QObject::destroyed, key, &QObject::deleteLater);
        connect(key, &QShortcut::activated, this, [this, plane = planes[i]] {
            defaultPlanePopUp_->setCurrentIndex(defaultPlanePopUp_->findText(plane));
            userPreferenceChanged(defaultPlanePopUp_);
        });
    }
    defaultPlanePopUp_->insertSeparator(1);
    defaultPlanePopUp_->setCurrentIndex(defaultPlanePopUp_->findText(
        PreferencesStore::standard().string(PreferenceKeys::defaultPlane),
        Qt::MatchFixedString | Qt::MatchCaseSensitive));
}

void TavDefaultsController::syncFindOptions()
{
    const qint64 options = PreferencesStore::standard().integer(PreferenceKeys::findOptions);
    for (QAbstractButton *checkbox : findOptionsMatrix_->buttons())
        checkbox->setChecked(options & findOptionsMatrix_->id(checkbox));
}

QStringList TavDefaultsController::_readRegistryPlanes() const
{
    const auto root = RegistryHandle::adopt(service_, service_.rootEntry());
    if (!root)
        return {};
    QStringList planes;
    const RegistryValue table =
        service_.copyProperty(root.get(), QStringLiteral("DxRegistryPlanes"));
    for (const RegistryValue::Member &plane : table.members())
        planes.append(plane.key.toOwner());
    std::sort(planes.begin(), planes.end(), [](const QString &a, const QString &b) {
        return compareRegistryPlaneForUI(a, b) < 0;
    });
    return planes;
}

void TavDefaultsController::userPreferenceChanged(const QObject *sender)
{
    if (isSyncing_)
        return;
    PreferencesStore &preferences = PreferencesStore::standard();
    if (sender == defaultViewMatrix_)
        preferences.setValue(PreferenceKeys::defaultView, defaultViewMatrix_->checkedId() != 0
                                                              ? QStringLiteral("browser")
                                                              : QStringLiteral("outline"));
    else if (sender == defaultPlanePopUp_)
        preferences.setValue(PreferenceKeys::defaultPlane, defaultPlanePopUp_->currentText());
    else if (sender == themePopUp_)
        preferences.setValue(PreferenceKeys::theme, themePopUp_->currentData().toString());
    else if (sender == filteredFindCheckbox_)
        preferences.setFlag(PreferenceKeys::filteredFind, filteredFindCheckbox_->isChecked());
    else if (sender == findOptionsMatrix_)
        _saveFindOptions();
    else if (sender == defaultAutoupdateCheckbox_)
        preferences.setFlag(PreferenceKeys::autoupdate, defaultAutoupdateCheckbox_->isChecked());
    else if (sender == defaultPolledUpdateCheckbox_)
        preferences.setFlag(PreferenceKeys::polledUpdate,
                            defaultPolledUpdateCheckbox_->isChecked());
    else if (sender == defaultPollIntervalField_)
        preferences.setValue(PreferenceKeys::pollInterval, defaultPollIntervalField_->value());
    else if (sender == followIntervalField_)
        preferences.setValue(PreferenceKeys::followInterval,
                             qRound(followIntervalField_->value() * 1000));
    else if (sender == recentDurationField_)
        preferences.setValue(PreferenceKeys::recentDuration, recentDurationField_->value());
}

void TavDefaultsController::_saveFindOptions()
{
    int options = 0;
    for (QAbstractButton *checkbox : findOptionsMatrix_->buttons()) {
        if (checkbox->isChecked())
            options |= findOptionsMatrix_->id(checkbox);
    }
    PreferencesStore::standard().setValue(PreferenceKeys::findOptions, options);
}

void TavDefaultsController::tabViewDidSelectTabViewItem(int index)
{
    if (!isSyncing_)
        PreferencesStore::standard().setValue(PreferenceKeys::preferencesTab,
                                              preferencesTabView_->widget(index)->objectName());
}
