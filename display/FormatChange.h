#pragma once

#include <QJsonValue>
#include <QString>
#include <vector>

// What one action changed among the stored formats and in the default one, key by key.
struct FormatChange
{
    struct Setting
    {
        QString domain; // of the preferences
        QString key;
        QJsonValue before; // undefined: not stored
        QJsonValue after;
    };

    std::vector<Setting> settings; // in the order of changing
};
