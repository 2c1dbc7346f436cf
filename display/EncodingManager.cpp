// SPDX-License-Identifier: Apache-2.0
#include "display/EncodingManager.h"

#include "platform/preferences/PreferencesStore.h"

#include <QSet>

namespace {
using Encodings = EncodingManager::Encodings;

bool precedes(quint32 a, quint32 b)
{
    const quint32 legacyOfA = TextEncodings::mostCompatibleLegacyEncoding(a);
    const quint32 legacyOfB = TextEncodings::mostCompatibleLegacyEncoding(b);
    if (legacyOfA == legacyOfB)
        return a < b;
    if (legacyOfA == TextEncodings::utf16 || legacyOfB == TextEncodings::utf16)
        return legacyOfA == TextEncodings::utf16;
    return legacyOfA < legacyOfB;
}

bool isAvailable(quint32 encoding)
{
    const std::vector<quint32> &available = TextEncodings::available();
    return std::binary_search(available.begin(), available.end(), encoding);
}

// Without duplicates and unavailable encodings.
Encodings storedEncodings(const QJsonArray &list)
{
    Encodings encodings;
    QSet<quint32> seen;
    for (const auto &item : list) {
        const qint64 number = item.toInteger(TextEncodings::none);
        if (number < 0 || number >= TextEncodings::none)
            continue;
        const auto encoding = static_cast<quint32>(number);
        if (!isAvailable(encoding) || seen.contains(encoding))
            continue;
        seen.insert(encoding);
        encodings.push_back(encoding);
    }
    return encodings;
}
} // namespace

EncodingManager::EncodingManager()
    : mergeObservation_(NotificationCenter::defaultCenter().observe(
          PreferencesStore::didMergeNotification(), nullptr,
          [this](const auto &) { noteMergedPreferences(); }))
{}

EncodingManager &EncodingManager::sharedInstance()
{
    static EncodingManager manager;
    return manager;
}

const Encodings &EncodingManager::allAvailableStringEncodings()
{
    static const Encodings encodings = [] {
        Encodings list = TextEncodings::available();
        std::sort(list.begin(), list.end(), precedes);
        return list;
    }();
    return encodings;
}

Encodings EncodingManager::defaultEncodings()
{
    Encodings encodings;
    for (const quint32 encoding :
         {TextEncodings::ascii, TextEncodings::utf16, TextEncodings::utf8, TextEncodings::kelRoman,
          TextEncodings::windowsLatin1, TextEncodings::cStringEncoding()}) {
        const bool isListed =
            std::find(encodings.begin(), encodings.end(), encoding) != encodings.end();
        if (isAvailable(encoding) && !isListed)
            encodings.push_back(encoding);
    }
    return encodings;
}

const Encodings &EncodingManager::enabledEncodings()
{
    if (!enabled_)
        enabled_ = stored();
    return *enabled_;
}

Encodings EncodingManager::stored()
{
    const QJsonValue list =
        PreferencesStore::standard().value(PreferenceKeys::encodings.toString());
    return list.isArray() ? storedEncodings(list.toArray()) : defaultEncodings();
}

void EncodingManager::noteMergedPreferences()
{
    if (!enabled_ || *enabled_ == stored())
        return;
    enabled_.reset();
    noteEncodingListChange(false, true, true);
}

void EncodingManager::setEnabledEncodings(const Encodings &encodings)
{
    enabled_ = encodings;
    std::erase(*enabled_, TextEncodings::none);
    noteEncodingListChange(true, false, true);
}

void EncodingManager::clearAll()
{
    enabled_ = Encodings();
    noteEncodingListChange(true, true, true);
}

void EncodingManager::selectAll()
{
    enabled_ = allAvailableStringEncodings();
    noteEncodingListChange(true, true, true);
}

void EncodingManager::revertToDefault()
{
    PreferencesStore::standard().remove(PreferenceKeys::encodings.toString());
    enabled_ = defaultEncodings();
    noteEncodingListChange(false, true, true);
}

void EncodingManager::noteEncodingListChange(bool writePreferences, bool updateList,
                                             bool postNotification)
{
    if (writePreferences) {
        QJsonArray list;
        for (const quint32 encoding : enabledEncodings())
            list.append(static_cast<qint64>(encoding));
        PreferencesStore::standard().setValue(PreferenceKeys::encodings, list);
    }
    if (updateList && listUpdater_)
        listUpdater_();
    if (postNotification)
        NotificationCenter::defaultCenter().post(listChangedNotification(), nullptr);
}
