#include "tests/support/RegistryGenerator.h"
#include "store/TavDataStore.h"
#include "tests/support/TreePrinter.h"

#include <gtest/gtest.h>

namespace {
std::size_t countNodes(const TavRegistryProperty &top)
{
    std::size_t count = 1;
    for (const TavRegistryProperty *child : top.children())
        count += countNodes(*child);
    return count;
}
} // namespace

TEST(RegistryGenerator, MakesTheEntriesAndNodesAskedFor)
{
    FakeRegistryService service;
    RegistryGenerator::generate(service, {2000, 40});
    const auto store = TavDataStore::initFromDxRegistry(service);
    ASSERT_EQ(store->registryEntries().size(), 2000U);
    EXPECT_EQ(store->registryPlanes().size(), 6);
    std::size_t widest = 0;
    std::size_t withSeveralParents = 0;
    for (const EntryRef &entry : store->registryEntries()) {
        ASSERT_TRUE(entry->properties());
        if (!entry->isRegistryRoot()) {
            EXPECT_EQ(countNodes(*entry->properties()), 40U);
        }
        widest = std::max(widest, entry->childrenInPlane(QStringLiteral("DxService")).size());
        withSeveralParents += entry->parentsInPlane(QStringLiteral("DxPower")).size() > 1;
    }
    EXPECT_GT(widest, 100U);
    EXPECT_GT(withSeveralParents, 20U);
}
