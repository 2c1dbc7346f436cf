// SPDX-License-Identifier: Apache-2.0
#include "cli/EntrySummary.h"

#include "display/export/EntryFactTexts.h"
#include "model/TavRegistryEntryPath.h"
#include "store/EntryLocator.h"

namespace {
using Fact = EntryFactTexts::Fact;

QString textOrNull(const QString &text)
{
    return text.isEmpty() ? QString() : text;
}
} // namespace

QString EntrySummary::path(const TavRegistryEntry &entry, const QString &plane)
{
    return EntryFactTexts::text(Fact::Path, entry, plane);
}

QStringList EntrySummary::paths(TavRegistryEntry &entry, const QString &plane)
{
    QStringList paths;
    for (const TavRegistryEntryPath &path : entry.entryPathsInPlane(plane))
        paths.append(entry.isRegistryRoot() ? plane + u':' : path.registryPath());
    return paths;
}

void EntrySummary::addMembers(JsonWriter &json, const TavRegistryEntry &entry, const QString &plane)
{
    addMembers(json, entry, plane, path(entry, plane));
}

void EntrySummary::addMembers(JsonWriter &json, const TavRegistryEntry &entry, const QString &plane,
                              const QString &path)
{
    const auto member = [&](const char *key, Fact fact) {
        json.member(QLatin1String(key), textOrNull(EntryFactTexts::text(fact, entry, plane)));
    };
    member("id", Fact::Identifier);
    json.member(QLatin1String("path"), path);
    member("name", Fact::Name);
    member("class", Fact::Class);
    member("kernelPath", Fact::KernelPath);
    member("deviceNode", Fact::DeviceNode);
    member("device", Fact::Device);
}
