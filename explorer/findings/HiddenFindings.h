// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/NotificationCenter.h"

#include <QObject>
#include <QString>
#include <vector>

// What the user does not want to see among the findings: one, those of a check, or those of a
// device. A preference, so all windows agree.
class HiddenFindings : public QObject
{
    Q_OBJECT
public:
    // Where a finding is: the check's ID, and the device by its machine and its path there. In a
    // rule, an empty check stands for any, and an empty path for any device.
    struct Place
    {
        QString check;
        QString host;
        QString path;

        Place ofCheck() const { return {check, {}, {}}; }
        Place ofDevice() const { return {{}, host, path}; }
        friend bool operator==(const Place &, const Place &) = default;
    };

    HiddenFindings();

    bool hides(const Place &finding) const;
    bool isEmpty() const { return rules_.empty(); }
    void hide(const Place &rule);
    void show(const Place &finding); // drops every rule that hides it
    void showAll();

Q_SIGNALS:
    void changed();

private:
    static std::vector<Place> preferred();
    static void store(const std::vector<Place> &rules);
    static bool applies(const Place &rule, const Place &finding);
    void follow();

    std::vector<Place> rules_;
    NotificationCenter::Observation changes_;
    NotificationCenter::Observation merges_;
};
