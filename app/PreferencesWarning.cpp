#include "app/PreferencesWarning.h"

#include "display/PropertyFormatStore.h"
#include "platform/documents/RecentDocuments.h"
#include "platform/preferences/PreferencesStore.h"

PreferencesWarning::PreferencesWarning(QWidget &parent)
    : parent_(parent)
{
    for (const PreferencesStore *store :
         {&PreferencesStore::standard(), &PreferencesStore::shared(PropertyFormatStore::domain()),
          &PreferencesStore::shared(RecentDocuments::domain())}) {
        for (const QString &problem : store->problems())
            tell(problem);
    }
    observation_ = NotificationCenter::defaultCenter().observe(
        PreferencesStore::problemNotification(), nullptr, [this](const auto &notification) {
            tell(
                static_cast<const PreferencesStore *>(notification.object)->problems().constLast());
        });
}

// Several problems share a box: they have most often one cause.
void PreferencesWarning::tell(const QString &problem)
{
    if (box_) {
        box_->setInformativeText(box_->informativeText() + u'\n' + problem);
        return;
    }
    box_ = new QMessageBox(QMessageBox::Warning, QMessageBox::tr("Vandrel"),
                           QMessageBox::tr("Some of your settings cannot be used."),
                           QMessageBox::Ok, &parent_);
    box_->setInformativeText(problem);
    box_->setAttribute(Qt::WA_DeleteOnClose);
    box_->setModal(false);
    box_->show();
}
