// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonValue>
#include <QString>
#include <vector>

// The stored formats, including the default one, that one action changed, key by key.
struct FormatChange
{
    struct Setting
    {
        QString domain; // of the preferences
        QString key;
        QJsonValue before; // undefined: not stored
        QJsonValue after;
    };

    std::vector<Setting> settings; // in the order of the changes
};
