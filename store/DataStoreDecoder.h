// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/KeyedUnarchiver.h"
#include "platform/runloop/WorkProgress.h"
#include "store/TavDataStore.h"

// Decodes an archived data store from the bytes of a document. Accepts hostile input: time and
// memory are linear in its size, and the result is consistent. Any thread.
class DataStoreDecoder
{
public:
    // Null, and logged, when the bytes hold no readable store. Throws
    // TavOldUnsupportedFileVersionException and TavNewUnsupportedFileVersionException.
    static std::unique_ptr<TavDataStore> decode(const QByteArray &bytes, WorkProgress &progress);
    static std::unique_ptr<TavDataStore> decode(const QByteArray &bytes);

private:
    DataStoreDecoder(KeyedUnarchiver &unarchiver, WorkProgress &progress);
    bool decodeStore();
    bool checkVersion() const;
    bool succeeded(QLatin1String key) const; // logs the key if not
    using References = std::vector<ArchiveReference>;

    bool decodeEntries();
    bool decodeOnOneThread(const References &entries);
    bool decodeOnTwoThreads(const References &entries); // logs nothing
    template<class Decode>
    bool decodeEach(const References &entries, Decode decode);
    bool decodePlanes();
    bool makeEntries(const References &references);

    KeyedUnarchiver &unarchiver_;
    WorkProgress &progress_;
    ObjectDecoder object_;
    std::unique_ptr<TavDataStore> store_;
    std::vector<TavRegistryEntry *> entries_; // by archive object
};
