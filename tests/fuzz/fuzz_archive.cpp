// SPDX-License-Identifier: Apache-2.0
// The archive container, from arbitrary bytes. The digest, which no random change survives, is
// corrected first.

#include "Fuzzing.h"
#include "platform/archive/KeyedUnarchiver.h"
#include "tests/support/ArchiveSeal.h"

namespace {
constexpr QLatin1String classes[] = {QLatin1String("Node")};

using Decode = void (*)(const ObjectDecoder &, QLatin1String);
constexpr Decode ways[] = {
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeInteger<qint32>(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeInteger<quint64>(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeBoolean(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeNumber(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeString(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeDate(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeData(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeStrings(k); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeReference(k, classes); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeReferences(k, classes); },
    [](const ObjectDecoder &o, QLatin1String k) { o.decodeValue(k, ArchiveKinds(~0), classes); },
};
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    KeyedUnarchiver unarchiver(sealArchive(fuzzedBytes(data, size)));
    require((unarchiver.objectCount() == 0) == unarchiver.error().has_value());
    // After an error everything is absent, so each input is decoded in one way only.
    const Decode decode = ways[size % std::size(ways)];
    for (quint32 i = 0; i < unarchiver.objectCount(); ++i) {
        for (const char *key : {"number", "name", "next", "value", "missing"})
            decode(unarchiver.object({i}), QLatin1String(key));
    }
    return 0;
}
