// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributePolicy.h"

#include "platform/text/WildPattern.h"

#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <mutex>
#include <optional>
#include <shared_mutex>

namespace {
using Patterns = std::vector<WildPattern>;
using Words = std::vector<QByteArray>;

bool matchesAny(const Patterns &patterns, const QByteArray &text)
{
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const WildPattern &pattern) { return pattern.matches(text); });
}

// Whether a part of the name between underscores is among the words.
bool hasAny(const Words &words, const QByteArray &name)
{
    const QList<QByteArray> parts = QByteArray(name).replace('-', '_').split('_');
    return std::any_of(parts.begin(), parts.end(), [&](const QByteArray &part) {
        return std::find(words.begin(), words.end(), part) != words.end();
    });
}

Words textsOf(const QJsonObject &row, const char *key)
{
    Words found;
    for (const auto &word : row.value(QLatin1String(key)).toArray())
        found.push_back(word.toString().toUtf8());
    return found;
}

std::optional<Patterns> patterns(const QJsonObject &row, const char *key)
{
    if (!row.value(QLatin1String(key)).isArray())
        return std::nullopt;
    const Words texts = textsOf(row, key);
    return Patterns(texts.begin(), texts.end());
}

AttributePolicy::Folder folderNamed(const QByteArray &name)
{
    using Folder = AttributePolicy::Folder;
    return name == "bus"        ? Folder::Bus
           : name == "class"    ? Folder::Class
           : name == "driver"   ? Folder::Driver
           : name == "module"   ? Folder::Module
           : name == "firmware" ? Folder::Firmware
                                : Folder::Device;
}

std::vector<AttributePolicy::Folder> foldersOf(const QJsonObject &row)
{
    std::vector<AttributePolicy::Folder> folders;
    for (const QByteArray &kind : textsOf(row, "in"))
        folders.push_back(folderNamed(kind));
    return folders;
}

bool contains(const std::vector<AttributePolicy::Folder> &folders, AttributePolicy::Folder folder)
{
    return std::find(folders.begin(), folders.end(), folder) != folders.end();
}
} // namespace

struct AttributePolicy::Row
{
    explicit Row(const QJsonObject &row);
    bool fits(const QByteArray &folder, const QByteArray &name) const;
    bool appliesTo(const Context &context) const;

    Rule rule = Rule::Never;
    Patterns names;
    Words words;
    Patterns except;
    std::optional<Patterns> directories;
    std::vector<Folder> folders; // none: any
    std::optional<Patterns> subsystems;
    std::optional<Patterns> drivers;
    std::optional<Patterns> paths;
    bool onlyInterfaceDown = false;
    bool onlySuspended = false;
    QByteArray reason;
};

struct AttributePolicy::Directories
{
    std::vector<Folder> folders;
    Patterns names;
};

struct AttributePolicy::Table
{
    std::vector<Row> rows;
    std::vector<Directories> skipped;
};

AttributePolicy::Row::Row(const QJsonObject &row)
    : rule(row.value(QLatin1String("rule")) == QLatin1String("never") ? Rule::Never
                                                                      : Rule::OnRequest)
    , names(patterns(row, "names").value_or(Patterns()))
    , words(textsOf(row, "words"))
    , except(patterns(row, "except").value_or(Patterns()))
    , directories(patterns(row, "directory"))
    , folders(foldersOf(row))
    , subsystems(patterns(row, "subsystem"))
    , drivers(patterns(row, "driver"))
    , paths(patterns(row, "path"))
    , onlyInterfaceDown(row.value(QLatin1String("when")) == QLatin1String("interface down"))
    , onlySuspended(row.value(QLatin1String("when")) == QLatin1String("suspended"))
    , reason(row.value(QLatin1String("reason")).toString().toUtf8())
{}

bool AttributePolicy::Row::fits(const QByteArray &folder, const QByteArray &name) const
{
    return (!directories || matchesAny(*directories, folder)) &&
           (matchesAny(names, name) || (!words.empty() && hasAny(words, name))) &&
           !matchesAny(except, name);
}

bool AttributePolicy::Row::appliesTo(const Context &context) const
{
    const auto allows = [](const std::optional<Patterns> &allowed, const QByteArray &its) {
        return !allowed || matchesAny(*allowed, its);
    };
    const bool isOfDevice = subsystems || drivers || paths;
    return (!isOfDevice || context.folder == Folder::Device) &&
           (folders.empty() || contains(folders, context.folder)) &&
           (!onlyInterfaceDown || context.isInterfaceDown) &&
           (!onlySuspended || context.isSuspended) && allows(subsystems, context.subsystem) &&
           allows(drivers, context.driver) && allows(paths, context.path.toByteArray());
}

const AttributePolicy::Table &AttributePolicy::table()
{
    static const Table table = [] {
        QFile file(QStringLiteral(":/attributes/policy.json"));
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        if (!isOpen || root.isEmpty())
            qFatal("attributes/policy.json is missing from the program's resources");
        Table read;
        for (const auto &row : root.value(QLatin1String("rules")).toArray())
            read.rows.emplace_back(row.toObject());
        for (const auto &row : root.value(QLatin1String("directories")).toArray()) {
            const QJsonObject its = row.toObject();
            read.skipped.push_back({foldersOf(its), patterns(its, "names").value_or(Patterns())});
        }
        return read;
    }();
    return table;
}

AttributePolicy::AttributePolicy(Context context)
    : context_(std::move(context))
{}

// Cached: a machine has many more attributes than attribute names, and most names match no rule.
// Global, like the rules themselves: all reader threads share it.
AttributePolicy::Rows AttributePolicy::rowsThatFit(const QByteArray &folder, const QByteArray &name)
{
    constexpr qsizetype maxNames = 20000;
    static std::shared_mutex mutex;
    static QHash<std::pair<QByteArray, QByteArray>, Rows> known;
    {
        const std::shared_lock lock(mutex);
        const auto found = known.constFind({folder, name});
        if (found != known.constEnd())
            return *found;
    }
    Rows rows;
    for (const Row &row : table().rows) {
        if (row.fits(folder, name))
            rows.push_back(&row);
    }
    const std::unique_lock lock(mutex);
    if (known.size() >= maxNames)
        known.clear();
    return *known.insert({folder, name}, rows);
}

const AttributePolicy::Row *AttributePolicy::row(const QByteArray &folder,
                                                 const QByteArray &name) const
{
    for (const Row *const row : rowsThatFit(folder, name)) {
        if (row->appliesTo(context_))
            return row;
    }
    return nullptr;
}

AttributePolicy::Rule AttributePolicy::rule(const QByteArray &folder, const QByteArray &name) const
{
    const Row *const found = row(folder, name);
    return found ? found->rule : Rule::Always;
}

QByteArray AttributePolicy::reason(const QByteArray &folder, const QByteArray &name) const
{
    const Row *const found = row(folder, name);
    return found ? found->reason : QByteArray();
}

bool AttributePolicy::skipsDirectory(Folder folder, const QByteArray &name)
{
    const std::vector<Directories> &skipped = table().skipped;
    return std::any_of(skipped.begin(), skipped.end(), [&](const Directories &its) {
        return contains(its.folders, folder) && matchesAny(its.names, name);
    });
}
