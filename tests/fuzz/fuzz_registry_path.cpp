// SPDX-License-Identifier: Apache-2.0
// Typed registry paths: the first line. Each further line is an entry, name@location, nested by
// leading spaces. Completion, marking and resolution of a path must agree, and every entry must be
// found by its own paths.

#include "FuzzedLines.h"
#include "Fuzzing.h"
#include "explorer/selection/RegistryPathReader.h"
#include "model/TavRegistryEntryPath.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeLiveService.h"

namespace {
const QString plane = QStringLiteral("DxService");

// Whether all paths are unique, as on a machine.
bool build(FakeRegistryService &service, const QByteArray &outline)
{
    const QString device = QStringLiteral("DxDevice");
    const auto root = service.add(device, "Root");
    service.setRoot(root);
    std::vector<FakeRegistry::Node> path{service.add(device, "Host")};
    service.link(root, path.front(), plane.toLatin1());
    bool arePlain = true;
    for (const auto &[depth, text] : fuzzedLines(outline)) {
        const qsizetype at = text.lastIndexOf('@');
        const auto node = at < 0 ? service.add(device, text)
                                 : service.add(device, text.first(at), text.mid(at + 1));
        arePlain = arePlain && !text.contains('/') && !text.contains('\0');
        path.resize(depth + 1);
        service.link(path.back(), node, plane.toLatin1());
        path.push_back(node);
    }
    service.publishPlanes();
    return arePlain;
}

void checkOwnPaths(TavDataStore &store)
{
    for (const EntryRef &entry : store.registryEntries()) {
        for (const TavRegistryEntryPath &path : entry->entryPathsInPlane(plane)) {
            if (path.length() > 1)
                require(store.entriesMatchingRegistryPath(path.registryPath())
                            .entries.contains(entry.get()));
        }
    }
}

void checkTyped(const std::shared_ptr<TavDataStore> &store, const QString &text, bool arePlain)
{
    RegistryPathReader reader(store);
    const auto problem = reader.problem(text);
    require(!problem || (problem->start >= 0 && problem->length > 0 &&
                         problem->start + problem->length <= text.size()));
    const auto found = store->entriesMatchingRegistryPath(text);
    require(!found.entries.isEmpty() || found.plane.isNull());
    if (!arePlain)
        return;
    for (const QString &candidate : reader.candidates(text)) {
        require(candidate.startsWith(text.left(text.lastIndexOf(u'/') + 1)));
        require(!store->entriesMatchingRegistryPath(candidate).entries.isEmpty());
    }
    const QString top = plane + QStringLiteral(":/");
    if (text.startsWith(top) && text != top)
        require(found.entries.isEmpty() == reader.problemOfWhole(text).has_value());
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const QByteArray input = fuzzedBytes(data, size);
    const qsizetype end = input.indexOf('\n');
    const QString typed = QString::fromUtf8(end < 0 ? input : input.first(end));
    FakeLiveService service;
    const bool arePlain = build(service, input.mid(end + 1));
    const std::shared_ptr<TavDataStore> store = TavDataStore::initFromDxRegistry(service);
    if (arePlain)
        checkOwnPaths(*store);
    checkTyped(store, typed, arePlain);
    return 0;
}
