// SPDX-License-Identifier: Apache-2.0
// What an update may skip: compares a store that reads only changes with one that reads everything.
#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"
#include "tests/support/EventLoop.h"
#include "tests/support/MadeTree.h"

#include <random>

namespace {
QString text(const TavDataStore &store)
{
    QString text;
    const auto add = [&](const char *title, const EntryList::Entries &entries) {
        text += QLatin1String(title);
        for (const TavRegistryEntry *entry : entries)
            text += u' ' + QString::number(entry->entryTag());
    };
    for (const EntryRef &entry : store.registryEntries()) {
        text += QStringLiteral("%1 state %2 properties %3")
                    .arg(entry->entryTag())
                    .arg(entry->registryState())
                    .arg(entry->properties() ? entry->properties()->numberOfChildren() : -1);
        for (const QString &plane : store.registryPlanes()) {
            text += QLatin1String("; ") + plane + u' ' + entry->nameAtLocationInPlane(plane);
            add(" children", entry->childrenInPlane(plane));
            add(" parents", entry->parentsInPlane(plane));
        }
        text += u'\n';
    }
    return text;
}

// Modules that use each other, and devices below each other, come, go and change.
class ChangingTree
{
public:
    void change()
    {
        const int a = number(12);
        const int b = number(12);
        const QByteArray module = "module/m" + QByteArray::number(a);
        const QByteArray other = "m" + QByteArray::number(b);
        const QByteArray device =
            "devices/d" + QByteArray::number(a / 4) + "/d" + QByteArray::number(b);
        switch (number(6)) {
        case 0:
            tree.remove(module.constData());
            break;
        case 1:
            tree.remove(device.constData());
            break;
        case 2:
            tree.file((module + "/refcnt").constData(), QByteArray::number(b) + '\n');
            break;
        case 3:
            tree.folder((module + "/holders").constData());
            if (a < b && !QFile::exists(QFile::decodeName(
                             tree.path((module + "/holders/" + other).constData()))))
                static_cast<void>(
                    symlink(("../../" + other).constData(),
                            tree.path((module + "/holders/" + other).constData()).constData()));
            break;
        default:
            tree.file((device + "/uevent").constData(), "MODALIAS=x" + QByteArray::number(a));
            tree.file((device + "/value").constData(), QByteArray::number(number(3)));
        }
    }
    MadeTree tree;

private:
    int number(int below) { return std::uniform_int_distribution(0, below - 1)(random_); }

    std::mt19937 random_{1};
};

TEST(RegistryPass, LeavesEverythingAsAReadingOfAllWould)
{
    ChangingTree host;
    for (int i = 0; i < 30; ++i)
        host.change();
    QString error;
    const auto service = *LinuxRegistryService::create(host.tree.sys());
    const auto store = TavDataStore::initFromDxRegistry(*service);
    const auto whole = TavDataStore::initFromDxRegistry(*service);
    for (int step = 0; step < 60; ++step) {
        for (int changes = step % 4; changes > 0; --changes)
            host.change();
        store->update();
        turnEventLoopFor(1); // what is gone is announced to both
        whole->updateTryingAgain();
        ASSERT_EQ(text(*store), text(*whole)) << "step " << step;
        if (step % 7 == 6) {
            store->clearTerminatedObjects();
            whole->clearTerminatedObjects();
        }
    }
}
} // namespace
