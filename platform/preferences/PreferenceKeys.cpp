// SPDX-License-Identifier: Apache-2.0
#include "platform/preferences/PreferenceKeys.h"

QJsonObject PreferenceKeys::defaults()
{
    QJsonObject defaults;
    const auto addText = [&](TextKey key) { defaults[key.name] = QString(key.defaultValue); };
    const auto addInteger = [&](IntegerKey key) { defaults[key.name] = key.defaultValue; };
    const auto addFlag = [&](FlagKey key) {
        defaults[key.name] = key.defaultValue ? QStringLiteral("yes") : QStringLiteral("no");
    };
    for (const TextKey key : {defaultView, defaultPlane, theme, preferencesTab, defaultFormat})
        addText(key);
    for (const IntegerKey key :
         {findOptions, pollInterval, defaultBookmark, recentDuration, followInterval})
        addInteger(key);
    for (const FlagKey key :
         {filteredFind, showNumPaths, showDeviceNames, showIcons, autoupdate, polledUpdate,
          markRecentChanges, showFindingSigns, followValues, showSparklines})
        addFlag(key);
    return defaults;
}
