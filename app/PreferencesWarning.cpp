// SPDX-License-Identifier: Apache-2.0
#include "app/PreferencesWarning.h"

#include "display/PropertyFormatStore.h"
#include "platform/desktop/AlertBox.h"
#include "platform/documents/RecentDocuments.h"
#include "platform/preferences/PreferencesStore.h"

#include <QCoreApplication>
#include <QMessageBox>

PreferencesWarning::PreferencesWarning(QWidget &parent)
    : parent_(parent)
{
    for (const PreferencesStore *store :
         {&PreferencesStore::standard(), &PreferencesStore::shared(PropertyFormatStore::domain()),
          &PreferencesStore::shared(RecentDocuments::domain())}) {
        for (const QString &problem : store->problems())
            show(problem);
    }
    observation_ = NotificationCenter::defaultCenter().observe(
        PreferencesStore::problemNotification(), nullptr, [this](const auto &notification) {
            show(
                static_cast<const PreferencesStore *>(notification.object)->problems().constLast());
        });
}

PreferencesWarning::~PreferencesWarning() = default;

// Several problems share a box, because they usually have one cause.
void PreferencesWarning::show(const QString &problem)
{
    if (box_) {
        box_->setInformativeText(box_->informativeText() + u'\n' + problem);
        return;
    }
    box_ = AlertBox::show({.title = QMessageBox::tr("Vandrel"),
                           .message = QMessageBox::tr("Some of your settings cannot be used."),
                           .details = problem,
                           .window = &parent_,
                           .isModal = false});
}
