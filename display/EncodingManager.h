#pragma once

#include "platform/runloop/NotificationCenter.h"
#include "platform/text/TextEncodings.h"

#include <functional>

// The text encodings that are offered for data shown as characters: of all that there are, the
// ones that the user enabled.
class EncodingManager
{
public:
    using Encodings = std::vector<quint32>;

    static EncodingManager &sharedInstance();
    EncodingManager();
    // Posted about nothing whenever the user changed the enabled encodings, here or in another copy
    // of the program.
    static QString listChangedNotification() { return QStringLiteral("EncodingsListChanged"); }

    // In display order: Unicode first, then by their most compatible legacy encoding.
    static const Encodings &allAvailableStringEncodings();
    static Encodings defaultEncodings();

    // Read from the preferences when first asked for.
    const Encodings &enabledEncodings();

    // What the user does in the panel. An entry that is no encoding is left out.
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
