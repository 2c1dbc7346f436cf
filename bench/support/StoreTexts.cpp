// SPDX-License-Identifier: Apache-2.0
#include "bench/support/StoreTexts.h"

#include "store/TavDataStore.h"

namespace {
class Texts
{
public:
    void add(const void *text, qsizetype bytes)
    {
        const auto before = seen_.size();
        seen_.insert(text);
        if (seen_.size() != before)
            bytes_ += static_cast<double>(bytes);
    }
    void add(QStringView text) { add(text.utf16(), text.size() * 2); }
    void add(const TavRegistryProperty &node)
    {
        add(node.nameView());
        add(node.stringView());
        const QByteArray data = node.value().toData();
        add(data.constData(), data.size());
    }
    void add(const TavRegistryEntry &entry, const QStringList &planes)
    {
        for (const QString &plane : planes) {
            add(entry.nameInPlane(plane));
            add(entry.locationInPlane(plane));
        }
        for (const QString &name : entry.inheritance())
            add(name);
        add(entry.bundleID());
        std::vector<const TavRegistryProperty *> pending{entry.properties()};
        while (!pending.empty()) {
            const TavRegistryProperty *const node = pending.back();
            pending.pop_back();
            add(*node);
            for (const TavRegistryProperty *child : node->children())
                pending.push_back(child);
        }
    }
    double bytes() const { return bytes_; }

private:
    QSet<const void *> seen_;
    double bytes_ = 0;
};
} // namespace

double bytesOfTexts(const TavDataStore &store)
{
    Texts texts;
    for (const EntryRef &entry : store.registryEntries())
        texts.add(*entry, store.registryPlanes());
    return texts.bytes();
}
