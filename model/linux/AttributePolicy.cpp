#include "model/linux/AttributePolicy.h"

#include "model/linux/AttributeText.h"

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
using Patterns = std::vector<QByteArray>;

// "*" stands for any text, "#" for digits.
bool matches(QByteArrayView pattern, QByteArrayView text)
{
    if (pattern.isEmpty())
        return text.isEmpty();
    if (pattern.front() == '*' || pattern.front() == '#') {
        const bool isAnyText = pattern.front() == '*';
        for (qsizetype length = isAnyText ? 0 : 1; length <= text.size(); ++length) {
            if (!isAnyText && !AttributeText::isDigit(text[length - 1]))
                return false;
            if (matches(pattern.sliced(1), text.sliced(length)))
                return true;
        }
        return false;
    }
    return !text.isEmpty() && pattern.front() == text.front() &&
           matches(pattern.sliced(1), text.sliced(1));
}

bool matchesAny(const Patterns &patterns, const QByteArray &text)
{
    return std::any_of(patterns.begin(), patterns.end(),
                       [&](const QByteArray &pattern) { return matches(pattern, text); });
}

// Whether a part of the name between underscores is among the words.
bool hasAny(const Patterns &words, const QByteArray &name)
{
    const QList<QByteArray> parts = QByteArray(name).replace('-', '_').split('_');
    return std::any_of(parts.begin(), parts.end(), [&](const QByteArray &part) {
        return std::find(words.begin(), words.end(), part) != words.end();
    });
}

std::optional<Patterns> patterns(const QJsonObject &row, const char *key)
{
    const QJsonValue list = row.value(QLatin1String(key));
    if (!list.isArray())
        return std::nullopt;
    Patterns found;
    for (const auto &pattern : list.toArray())
        found.push_back(pattern.toString().toUtf8());
    return found;
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
} // namespace

struct AttributePolicy::Row
{
    explicit Row(const QJsonObject &row);
    bool fits(const QByteArray &name) const;
    bool appliesTo(const Context &context, const QByteArray &folder) const;

    Rule rule = Rule::Never;
    Patterns names;
    Patterns words;
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

struct AttributePolicy::Table
{
    std::vector<Row> rows;
    Patterns skippedDirectories;
};

AttributePolicy::Row::Row(const QJsonObject &row)
    : rule(row.value(QLatin1String("rule")) == QLatin1String("never") ? Rule::Never
                                                                      : Rule::OnRequest)
    , names(patterns(row, "names").value_or(Patterns()))
    , words(patterns(row, "words").value_or(Patterns()))
    , except(patterns(row, "except").value_or(Patterns()))
    , directories(patterns(row, "directory"))
    , subsystems(patterns(row, "subsystem"))
    , drivers(patterns(row, "driver"))
    , paths(patterns(row, "path"))
    , onlyInterfaceDown(row.value(QLatin1String("when")) == QLatin1String("interface down"))
    , onlySuspended(row.value(QLatin1String("when")) == QLatin1String("suspended"))
    , reason(row.value(QLatin1String("reason")).toString().toUtf8())
{
    for (const QByteArray &kind : patterns(row, "in").value_or(Patterns()))
        folders.push_back(folderNamed(kind));
}

bool AttributePolicy::Row::fits(const QByteArray &name) const
{
    return (matchesAny(names, name) || (!words.empty() && hasAny(words, name))) &&
           !matchesAny(except, name);
}

bool AttributePolicy::Row::appliesTo(const Context &context, const QByteArray &folder) const
{
    const auto allows = [](const std::optional<Patterns> &allowed, const QByteArray &its) {
        return !allowed || matchesAny(*allowed, its);
    };
    const bool isOfDevice = subsystems || drivers || paths;
    return allows(directories, folder) &&
           (folders.empty() ||
            std::find(folders.begin(), folders.end(), context.folder) != folders.end()) &&
           (!isOfDevice || context.folder == Folder::Device) &&
           (!onlyInterfaceDown || context.isInterfaceDown) &&
           (!onlySuspended || context.isSuspended) && allows(subsystems, context.subsystem) &&
           allows(drivers, context.driver) && allows(paths, context.path);
}

const AttributePolicy::Table &AttributePolicy::table()
{
    static const Table table = [] {
        QFile file(QStringLiteral(":/attributes/policy.json"));
        const bool isOpen = file.open(QIODevice::ReadOnly);
        const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
        if (!isOpen || root.isEmpty())
            qFatal("the table of attributes is not part of the program");
        Table read;
        for (const auto &row : root.value(QLatin1String("rules")).toArray())
            read.rows.emplace_back(row.toObject());
        for (const auto &row : root.value(QLatin1String("directories")).toArray()) {
            const Patterns names = patterns(row.toObject(), "names").value_or(Patterns());
            read.skippedDirectories.insert(read.skippedDirectories.end(), names.begin(),
                                           names.end());
        }
        return read;
    }();
    return table;
}

AttributePolicy::AttributePolicy(Context context)
    : context_(std::move(context))
{}

// Kept, because a machine has many times more attributes than names for them, and nearly all
// names have no rule.
AttributePolicy::Rows AttributePolicy::rowsThatFit(const QByteArray &name)
{
    constexpr qsizetype mostNames = 20000;
    static std::shared_mutex mutex;
    static QHash<QByteArray, Rows> known;
    {
        const std::shared_lock lock(mutex);
        const auto found = known.constFind(name);
        if (found != known.constEnd())
            return *found;
    }
    Rows rows;
    for (const Row &row : table().rows) {
        if (row.fits(name))
            rows.push_back(&row);
    }
    const std::unique_lock lock(mutex);
    if (known.size() >= mostNames)
        known.clear();
    return *known.insert(name, rows);
}

const AttributePolicy::Row *AttributePolicy::row(const QByteArray &folder,
                                                 const QByteArray &name) const
{
    for (const Row *const row : rowsThatFit(name)) {
        if (row->appliesTo(context_, folder))
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

bool AttributePolicy::skipsDirectory(const QByteArray &name)
{
    return matchesAny(table().skippedDirectories, name);
}
