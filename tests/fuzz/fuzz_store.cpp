// SPDX-License-Identifier: Apache-2.0
// Snapshots: whatever decodes must be consistent enough to be shown, searched, and written and
// reread unchanged.

#include "Fuzzing.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "store/FileVersionExceptions.h"
#include "tests/support/ArchiveSeal.h"
#include "tests/support/StorePrinter.h"

#include <QBuffer>

namespace {
QByteArray encoded(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    require(DataStoreEncoder::encode(store, device).isNull());
    return device.data();
}

void use(TavDataStore &store)
{
    EntrySet matches;
    QHash<QString, EntrySet> parents;
    store.runQuery(QStringLiteral("a"), {}, &matches, &parents);
    store.runQuery(QStringLiteral("active"), FindOption::Special, nullptr, nullptr);
    for (const EntryRef &entry : store.registryEntries()) {
        entry->getNumRegistryPaths();
        entry->numParents();
    }
    store.update();
    store.clearTerminatedObjects();
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    std::unique_ptr<TavDataStore> store;
    try {
        store = DataStoreDecoder::decode(sealArchive(fuzzedBytes(data, size)));
    } catch (const UnsupportedFileVersionException &) {
        return 0;
    }
    if (!store)
        return 0;
    const auto again = DataStoreDecoder::decode(encoded(*store));
    require(again != nullptr);
    // An entry without properties, possible in version 1, is written with empty ones.
    const auto &entries = store->registryEntries();
    if (std::all_of(entries.begin(), entries.end(), [](auto &e) { return e->properties(); }))
        require(StorePrinter::print(*again) == StorePrinter::print(*store));
    use(*store);
    return 0;
}
