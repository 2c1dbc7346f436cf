// SPDX-License-Identifier: Apache-2.0
#include "app/StoredFormats.h"

#include "display/PropertyFormatStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/TavFormatController.h"
#include "explorer/window/TavWindowController.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"

namespace {
QString storedDefault()
{
    return PreferencesStore::standard().string(PreferenceKeys::defaultFormat);
}
} // namespace

StoredFormats::StoredFormats(TavDocumentController &documents)
    : documents_(documents)
    , default_(storedDefault())
{
    NotificationCenter &center = NotificationCenter::defaultCenter();
    const QString merged = PreferencesStore::didMergeNotification();
    formatsObservation_ =
        center.observe(merged, &PreferencesStore::shared(PropertyFormatStore::domain()),
                       [this](const auto &) { refresh(); });
    defaultObservation_ = center.observe(merged, &PreferencesStore::standard(),
                                         [this](const auto &) { noteDefault(); });
}

void StoredFormats::noteDefault()
{
    const QString stored = storedDefault();
    if (std::exchange(default_, stored) != stored)
        refresh();
}

void StoredFormats::refresh()
{
    for (const auto &document : documents_.documents()) {
        for (const auto &controller : document->windowControllers()) {
            auto &window = static_cast<TavWindowController &>(*controller);
            window.dataViewOptionsChanged(window.rootPropertyItem().get());
        }
    }
    TavFormatController &panel = TavFormatController::sharedInstance();
    panel.setSelectedPropertyItem(panel.selectedPropertyItem());
}
