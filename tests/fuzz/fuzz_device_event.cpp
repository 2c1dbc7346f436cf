// SPDX-License-Identifier: Apache-2.0
// Device events, true and false, in any order, while the tree changes: a store that follows them
// must end up like a fresh capture. The input is a list of messages, each ended by NUL: "+PATH"
// adds a device, "-PATH" removes one, "ACTION@PATH" is an event, an empty message lets time pass,
// and any other is a loss of events.

#include "Fuzzing.h"
#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"
#include "tests/support/ScriptedEvents.h"
#include "tests/support/SimulatedRunLoop.h"
#include "tests/support/StorePrinter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {
const TreeReader::Options oneThread{.threads = 1}; // the sanitizers make them costly

class Tree
{
public:
    Tree()
    {
        add("/devices/bus");
        QDir().mkpath(folder_.filePath(QStringLiteral("grave")));
    }
    QString sys() const { return folder_.filePath(QStringLiteral("sys")); }

    void add(QByteArrayView path)
    {
        const QString place = placeOf(path);
        QFile uevent(place + QStringLiteral("/uevent"));
        if (!place.isNull() && QDir().mkpath(place) && uevent.open(QIODevice::WriteOnly))
            uevent.write("NUMBER=1\n");
    }
    // Kept elsewhere, so that its inode number is not reused.
    void remove(QByteArrayView path)
    {
        const QString place = placeOf(path);
        if (!place.isNull())
            QFile::rename(place, folder_.filePath(QStringLiteral("grave/%1").arg(++removals_)));
    }

private:
    // Null for paths that are not a device's or too deep.
    QString placeOf(QByteArrayView path) const
    {
        constexpr int maxDepth = 6;
        const auto event = DeviceEvent::parse("add", path);
        const bool isDevice = event && event->path.isBelow("devices") &&
                              event->path.depth() <= maxDepth && event->path.size() < NAME_MAX;
        return isDevice ? sys() + u'/' + QFile::decodeName(event->path.toByteArray()) : QString();
    }

    QTemporaryDir folder_;
    int removals_ = 0;
};

void send(QByteArrayView message, ScriptedEvents &events)
{
    const qsizetype at = message.indexOf('@');
    const QByteArrayView path = message.sliced(at + 1);
    if (at > 0 && path.startsWith('/'))
        events.send(message.first(at), path.sliced(1).toByteArray());
    else
        events.lose();
}

std::string captured(const QString &sys)
{
    const auto service = *LinuxRegistryService::create(sys, oneThread);
    const auto fresh = TavDataStore::initFromDxRegistry(*service);
    fresh->update(); // sorts children by the names of every plane
    return StorePrinter::planes(*fresh);
}

std::string shown(TavDataStore &store)
{
    for (int i = 0; i < 2; ++i)
        store.update(); // the list of planes is one update behind
    store.clearTerminatedObjects();
    for (const EntryRef &entry : store.registryEntries())
        entry->clearIsNew();
    return StorePrinter::planes(store);
}
} // namespace

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    static int argc = 0;
    static const QCoreApplication application(argc, nullptr);
    Tree tree;
    ScriptedEvents events;
    SimulatedRunLoop loop;
    const auto service = *LinuxRegistryService::create(tree.sys(), oneThread);
    service->setEventSourceFactory([&events] { return events.open(); });
    const auto store = TavDataStore::initFromDxRegistry(*service);
    store->setAutoupdate(size % 2 == 0);
    const auto pass = [&loop](double seconds) {
        QCoreApplication::processEvents();
        loop.advance(seconds);
    };
    for (const QByteArray &message : fuzzedBytes(data, size).split('\0')) {
        if (message.startsWith('+'))
            tree.add(QByteArrayView(message).sliced(1));
        else if (message.startsWith('-'))
            tree.remove(QByteArrayView(message).sliced(1));
        else if (message.isEmpty())
            pass(0.2);
        else
            send(message, events);
    }
    pass(1);
    require(shown(*store) == captured(tree.sys()));
    return 0;
}
