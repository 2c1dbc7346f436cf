// SPDX-License-Identifier: Apache-2.0
#include "explorer/findings/HiddenFindings.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"

namespace {
const QString checkKey = QStringLiteral("check");
const QString hostKey = QStringLiteral("host");
const QString pathKey = QStringLiteral("path");
} // namespace

HiddenFindings::HiddenFindings()
    : rules_(preferred())
{
    const auto observe = [this](const QString &name) {
        return NotificationCenter::defaultCenter().observe(name, &PreferencesStore::standard(),
                                                           [this](const auto &) { follow(); });
    };
    changes_ = observe(PreferencesStore::didChangeNotification());
    merges_ = observe(PreferencesStore::didMergeNotification());
}

// A rule that names neither would hide everything, and nobody can have made it.
std::vector<HiddenFindings::Place> HiddenFindings::preferred()
{
    std::vector<Place> rules;
    for (const auto &value : PreferencesStore::standard().list(PreferenceKeys::hiddenFindings)) {
        Place rule{value[checkKey].toString(), value[hostKey].toString(),
                   value[pathKey].toString()};
        if (!rule.check.isEmpty() || !rule.path.isEmpty())
            rules.push_back(std::move(rule));
    }
    return rules;
}

void HiddenFindings::store(const std::vector<Place> &rules)
{
    QJsonArray list;
    for (const Place &rule : rules)
        list.append(
            QJsonObject{{checkKey, rule.check}, {hostKey, rule.host}, {pathKey, rule.path}});
    PreferencesStore::standard().setValue(PreferenceKeys::hiddenFindings, list);
}

void HiddenFindings::follow()
{
    const auto before = std::exchange(rules_, preferred());
    if (rules_ != before)
        Q_EMIT changed();
}

bool HiddenFindings::applies(const Place &rule, const Place &finding)
{
    return (rule.check.isEmpty() || rule.check == finding.check) &&
           (rule.path.isEmpty() || (rule.path == finding.path && rule.host == finding.host));
}

bool HiddenFindings::hides(const Place &finding) const
{
    return std::any_of(rules_.begin(), rules_.end(),
                       [&](const Place &rule) { return applies(rule, finding); });
}

void HiddenFindings::hide(const Place &rule)
{
    if (rule.check.isEmpty() && rule.path.isEmpty()) // a device that has gone
        return;
    auto rules = rules_;
    rules.push_back(rule);
    store(rules);
}

void HiddenFindings::show(const Place &finding)
{
    auto rules = rules_;
    std::erase_if(rules, [&](const Place &rule) { return applies(rule, finding); });
    store(rules);
}

void HiddenFindings::showAll()
{
    store({});
}
