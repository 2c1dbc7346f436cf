// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QObject>

// What the rows of entries show beside their names. A preference, so all windows agree.
class RowPreferences : public QObject
{
    Q_OBJECT
public:
    RowPreferences();

    bool showsDeviceNames() const { return shown_.deviceNames; }
    bool showsIcons() const { return shown_.icons; }
    void toggleDeviceNames();
    void toggleIcons();
    bool showsFindingSigns() const { return shown_.findingSigns; }
    void toggleFindingSigns();
    bool marksRecentChanges() const { return shown_.recentChanges; }
    int recentDuration() const { return shown_.recentDuration; } // seconds
    void toggleRecentChanges();

Q_SIGNALS:
    void changed();

private:
    struct Shown
    {
        bool deviceNames;
        bool icons;
        bool findingSigns;
        bool recentChanges;
        int recentDuration;
        friend bool operator==(const Shown &, const Shown &) = default;
    };

    static Shown preferred();
    void follow();

    Shown shown_; // a copy, because rows ask for it whenever they are painted
    NotificationCenter::Observation changes_;
    NotificationCenter::Observation merges_;
};
