// SPDX-License-Identifier: Apache-2.0
#include "display/views/SelectEncodingsPanel.h"

#include "display/EncodingManager.h"
#include "platform/desktop/FloatingPanel.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/CloseKeys.h"
#include "platform/widgets/OutlineRowDelegate.h"

#include <QCoreApplication>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>

SelectEncodingsPanel &SelectEncodingsPanel::sharedInstance()
{
    // Its window must be destroyed before the application.
    static SelectEncodingsPanel *panel = nullptr;
    if (!panel) {
        panel = new SelectEncodingsPanel;
        qAddPostRoutine([] { delete std::exchange(panel, nullptr); });
    }
    return *panel;
}

SelectEncodingsPanel::~SelectEncodingsPanel()
{
    EncodingManager::sharedInstance().setListUpdater({});
}

void SelectEncodingsPanel::showPanel()
{
    if (!window_)
        load();
    setupEncodingsList();
    FloatingPanel::makeKey(*window_, worksWhenModal());
}

void SelectEncodingsPanel::load()
{
    window_ = InterfaceLoader().load(QStringLiteral("SelectEncodingsPanel"));
    FloatingPanel::prepare(*window_);
    CloseKeys::addTo(*window_);
    encodingsList_ = InterfaceLoader::outlet<QListWidget>(*window_, "encodingsList");
    encodingsList_->setItemDelegate(new OutlineRowDelegate(encodingsList_));
    connect(encodingsList_, &QListWidget::itemChanged, this,
            &SelectEncodingsPanel::encodingListChanged);
    EncodingManager &manager = EncodingManager::sharedInstance();
    manager.setListUpdater([this] { updateList(); });
    const auto connectButton = [&](const char *name, void (EncodingManager::*action)()) {
        connect(InterfaceLoader::outlet<QPushButton>(*window_, name), &QPushButton::clicked, this,
                [&manager, action] { (manager.*action)(); });
    };
    connectButton("clearAllButton", &EncodingManager::clearAll);
    connectButton("selectAllButton", &EncodingManager::selectAll);
    connectButton("revertToDefaultButton", &EncodingManager::revertToDefault);
}

void SelectEncodingsPanel::setupEncodingsList()
{
    if (encodingsList_->count() == 0) {
        const QSignalBlocker blocker(encodingsList_);
        for (const quint32 encoding : EncodingManager::allAvailableStringEncodings()) {
            auto *const row =
                new QListWidgetItem(TextEncodings::displayName(encoding), encodingsList_);
            row->setData(Qt::UserRole, encoding);
            row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        }
        encodingsList_->setCurrentRow(0);
    }
    EncodingManager::sharedInstance().noteEncodingListChange(false, true, false);
}

void SelectEncodingsPanel::updateList()
{
    const EncodingManager::Encodings &enabled =
        EncodingManager::sharedInstance().enabledEncodings();
    const QSet<quint32> checked(enabled.begin(), enabled.end());
    const QSignalBlocker blocker(encodingsList_);
    for (int i = 0; i < encodingsList_->count(); ++i) {
        QListWidgetItem *const row = encodingsList_->item(i);
        const bool isOn = checked.contains(row->data(Qt::UserRole).toUInt());
        row->setCheckState(isOn ? Qt::Checked : Qt::Unchecked);
    }
    encodingsList_->viewport()->update(); // it got no signal
}

void SelectEncodingsPanel::encodingListChanged()
{
    EncodingManager::Encodings enabled;
    for (int i = 0; i < encodingsList_->count(); ++i) {
        const QListWidgetItem *const row = encodingsList_->item(i);
        if (row->checkState() == Qt::Checked)
            enabled.push_back(row->data(Qt::UserRole).toUInt());
    }
    EncodingManager::sharedInstance().setEnabledEncodings(enabled);
}
