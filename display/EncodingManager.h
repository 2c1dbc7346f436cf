// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"
#include "platform/text/TextEncodings.h"

#include <functional>

// The text encodings offered for data shown as characters: those that the user enabled.
class EncodingManager
{
public:
    using Encodings = std::vector<quint32>;

    static EncodingManager &sharedInstance();
    EncodingManager();
    // Posted, with no object, when the user changed the enabled encodings here or in another
    // running copy.
    static QString listChangedNotification() { return QStringLiteral("EncodingsListChanged"); }

    // In display order: Unicode first, then by their most compatible legacy encoding.
    static const Encodings &allAvailableStringEncodings();
    static Encodings defaultEncodings();

    // Read from the preferences on first use.
    const Encodings &enabledEncodings();

    // The user's actions in the panel. Values that are not encodings are ignored.
    void setEnabledEncodings(const Encodings &encodings);
    void clearAll();
    void selectAll();
    void revertToDefault();

    // Called to refresh the panel's check boxes.
    void setListUpdater(std::function<void()> updater) { listUpdater_ = std::move(updater); }
    void noteEncodingListChange(bool writePreferences, bool updateList, bool postNotification);

private:
    static Encodings stored();
    void noteMergedPreferences();

    std::optional<Encodings> enabled_;
    std::function<void()> listUpdater_;
    NotificationCenter::Observation mergeObservation_;
};
