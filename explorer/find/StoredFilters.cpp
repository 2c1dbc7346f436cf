// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/StoredFilters.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"

namespace {
constexpr qsizetype maxRecent = 20;

const QString nameKey = QStringLiteral("name");
const QString expressionKey = QStringLiteral("expression");

void store(const std::vector<StoredFilters::Saved> &filters)
{
    QJsonArray list;
    for (const auto &[name, expression] : filters)
        list.append(QJsonObject{{nameKey, name}, {expressionKey, expression}});
    PreferencesStore::standard().setValue(PreferenceKeys::savedFilters, list);
}
} // namespace

QStringList StoredFilters::recent()
{
    QStringList expressions;
    for (const auto &value : PreferencesStore::standard().list(PreferenceKeys::recentFilters)) {
        if (!value.toString().isEmpty() && expressions.size() < maxRecent)
            expressions.append(value.toString());
    }
    return expressions;
}

void StoredFilters::noteUsed(const QString &expression)
{
    QStringList expressions = recent();
    expressions.removeAll(expression);
    expressions.prepend(expression);
    PreferencesStore::standard().setValue(
        PreferenceKeys::recentFilters,
        QJsonArray::fromStringList(expressions.first(std::min(expressions.size(), maxRecent))));
}

std::vector<StoredFilters::Saved> StoredFilters::saved()
{
    std::vector<Saved> filters;
    for (const auto &value : PreferencesStore::standard().list(PreferenceKeys::savedFilters)) {
        const QString name = value[nameKey].toString();
        const QString expression = value[expressionKey].toString();
        if (!name.isEmpty() && !expression.isEmpty())
            filters.push_back({name, expression});
    }
    std::sort(filters.begin(), filters.end(), [](const Saved &a, const Saved &b) {
        return QString::localeAwareCompare(a.name, b.name) < 0;
    });
    return filters;
}

void StoredFilters::save(const QString &name, const QString &expression)
{
    std::vector<Saved> filters = saved();
    std::erase_if(filters, [&](const Saved &filter) { return filter.name == name; });
    filters.push_back({name, expression});
    store(filters);
}

void StoredFilters::remove(const QString &name)
{
    std::vector<Saved> filters = saved();
    std::erase_if(filters, [&](const Saved &filter) { return filter.name == name; });
    store(filters);
}
