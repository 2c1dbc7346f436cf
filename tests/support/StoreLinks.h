// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/TavDataStore.h"

#include <gtest/gtest.h>

// Checks that in every plane parents and children name each other once, and are entries of the
// store.
inline void expectLinksAgree(const TavDataStore &store)
{
    EntrySet entries;
    for (const EntryRef &entry : store.registryEntries())
        entries.insert(entry.get());
    const auto expectBack = [&](TavRegistryEntry *entry, const EntryList::Entries &others,
                                const auto &linksOf) {
        for (TavRegistryEntry *other : others) {
            ASSERT_TRUE(entries.contains(other));
            const EntryList::Entries &back = linksOf(*other);
            EXPECT_EQ(std::count(back.begin(), back.end(), entry), 1)
                << entry->nameInPlane({}).toStdString();
        }
    };
    for (const QString &plane : store.registryPlanes()) {
        const auto parents = [&](auto &entry) -> auto &
        {
            return entry.parentsInPlane(plane);
        };
        const auto children = [&](auto &entry) -> auto &
        {
            return entry.childrenInPlane(plane);
        };
        for (TavRegistryEntry *entry : entries) {
            expectBack(entry, children(*entry), parents);
            expectBack(entry, parents(*entry), children);
        }
    }
}
