// SPDX-License-Identifier: Apache-2.0
#include "model/ChainsUp.h"

TavRegistryEntryPath ChainsUp::pathDown(const Chain &chain, const QString &plane)
{
    std::vector<EntryRef> entries;
    entries.reserve(chain.size());
    for (auto entry = chain.rbegin(); entry != chain.rend(); ++entry)
        entries.push_back(const_cast<TavRegistryEntry *>(*entry)->shared_from_this());
    return TavRegistryEntryPath(plane, std::move(entries));
}
