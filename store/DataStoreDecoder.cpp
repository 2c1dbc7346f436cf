// SPDX-License-Identifier: Apache-2.0
#include "store/DataStoreDecoder.h"

#include "store/ArchiveKeys.h"
#include "store/DecodingLog.h"
#include "store/FileVersionExceptions.h"
#include "store/RegistryEntryDecoder.h"
#include "store/SnapshotLimits.h"

#include <QScopeGuard>
#include <future>

namespace {
constexpr double readingPart = 0.4;
constexpr std::size_t betweenReports = 256;
constexpr std::size_t worthTwoThreads = 4096; // entries
} // namespace

std::unique_ptr<TavDataStore> DataStoreDecoder::decode(const QByteArray &bytes)
{
    WorkProgress progress;
    return decode(bytes, progress);
}

std::unique_ptr<TavDataStore> DataStoreDecoder::decode(const QByteArray &bytes,
                                                       WorkProgress &progress)
{
    KeyedUnarchiver unarchiver(bytes, [&](double part) { progress.reach(readingPart * part); });
    if (unarchiver.isOfNewerFormat())
        throw TavNewUnsupportedFileVersionException();
    if (unarchiver.objectCount() == 0) {
        logUnableToDecode("the archive", unarchiver);
        return nullptr;
    }
    DataStoreDecoder decoder(unarchiver, progress);
    return decoder.decodeStore() ? std::move(decoder.store_) : nullptr;
}

DataStoreDecoder::DataStoreDecoder(KeyedUnarchiver &unarchiver, WorkProgress &progress)
    : unarchiver_(unarchiver)
    , progress_(progress)
    , object_(unarchiver.object(KeyedUnarchiver::root))
    , store_(new TavDataStore)
{}

bool DataStoreDecoder::decodeStore()
{
    if (!object_.isOfClass(ArchiveClassName::dataStore)) {
        unarchiver_.fail(QStringLiteral("not a data store"),
                         QString::fromUtf8(object_.className()));
        logUnableToDecode("the archive", unarchiver_);
        return false;
    }
    if (!checkVersion())
        return false;
    store_->hostName_ = object_.decodeString(DataStoreKey::hostName);
    if (!succeeded(DataStoreKey::hostName))
        return false;
    store_->archName_ = object_.decodeString(DataStoreKey::archName);
    if (!succeeded(DataStoreKey::archName))
        return false;
    // Deliberate: anything but a number counts as none.
    if (object_.containsNumber(DataStoreKey::byteOrder))
        store_->byteOrder_ =
            static_cast<qint32>(object_.decodeNumber(DataStoreKey::byteOrder)->bits);
    if (!decodeEntries()) {
        logUnableToDecode(DataStoreKey::registryEntries.data(), unarchiver_);
        return false;
    }
    if (!decodePlanes()) {
        logUnableToDecode(DataStoreKey::registryPlanes.data(), unarchiver_);
        return false;
    }
    store_->lastUpdateDate_ = object_.decodeDate(DataStoreKey::lastUpdateDate);
    if (!succeeded(DataStoreKey::lastUpdateDate))
        return false;
    store_->isUpToDate_ = object_.decodeBoolean(DataStoreKey::isUpToDate);
    return succeeded(DataStoreKey::isUpToDate);
}

bool DataStoreDecoder::succeeded(QLatin1String key) const
{
    if (unarchiver_.error())
        logUnableToDecode(key.data(), unarchiver_);
    return !unarchiver_.error();
}

// False unless there is a valid version number.
bool DataStoreDecoder::checkVersion() const
{
    const auto version = object_.decodeInteger<quint64>(DataStoreKey::version);
    if (!succeeded(DataStoreKey::version))
        return false;
    if (version == 0)
        throw TavOldUnsupportedFileVersionException();
    if (version >= 3)
        throw TavNewUnsupportedFileVersionException();
    return true;
}

bool DataStoreDecoder::decodeEntries()
{
    const auto references =
        object_.decodeReferences(DataStoreKey::registryEntries, ArchiveClassName::entry);
    if (!references || !makeEntries(*references))
        return false;
    if (references->size() < worthTwoThreads)
        return decodeOnOneThread(*references);
    if (decodeOnTwoThreads(*references))
        return true;
    // One thread finds and logs the fault.
    return makeEntries(*references) && decodeOnOneThread(*references);
}

template<class Decode>
bool DataStoreDecoder::decodeEach(const References &entries, Decode decode)
{
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (i % betweenReports == 0)
            progress_.reach(readingPart + (1 - readingPart) * static_cast<double>(i) /
                                              static_cast<double>(entries.size()));
        if (!decode(entries[i]))
            return false;
    }
    return true;
}

bool DataStoreDecoder::decodeOnOneThread(const References &entries)
{
    RegistryEntryDecoder decoder(unarchiver_, entries_);
    return decodeEach(entries, [&](ArchiveReference entry) { return decoder.decode(entry); }) &&
           decoder.finish();
}

// Properties are about half of the work.
bool DataStoreDecoder::decodeOnTwoThreads(const References &entries)
{
    std::atomic<bool> isOver = false;
    const auto decodeProperties = [&] {
        KeyedUnarchiver unarchiver(unarchiver_, KeyedUnarchiver::Silently::Yes);
        RegistryEntryDecoder decoder(unarchiver, entries_);
        return std::all_of(entries.begin(), entries.end(), [&](ArchiveReference entry) {
            return !isOver && decoder.decodeProperties(entry);
        });
    };
    auto properties = std::async(std::launch::async, decodeProperties);
    const auto end = qScopeGuard([&] { isOver = true; }); // before waiting for the other thread
    KeyedUnarchiver unarchiver(unarchiver_, KeyedUnarchiver::Silently::Yes);
    RegistryEntryDecoder decoder(unarchiver, entries_);
    const bool isSound =
        decodeEach(entries, [&](ArchiveReference entry) { return decoder.decodeFacts(entry); }) &&
        decoder.finish();
    isOver = !isSound;
    return properties.get() && isSound;
}

bool DataStoreDecoder::decodePlanes()
{
    const auto planes = object_.decodeStrings(DataStoreKey::registryPlanes);
    if (!planes)
        return false;
    if (!SnapshotLimits::allowPlanes(*planes)) {
        unarchiver_.fail(QStringLiteral("too many planes, or names that are too long"),
                         QString::number(planes->size()));
        return false;
    }
    store_->registryPlanes_ = *planes;
    return true;
}

// Creates all entries before decoding any, since they refer to each other.
bool DataStoreDecoder::makeEntries(const std::vector<ArchiveReference> &references)
{
    quint32 highest = 0;
    for (const ArchiveReference reference : references)
        highest = std::max(highest, reference.index);
    entries_.assign(highest + std::size_t(1), nullptr);
    store_->registryEntries_.clear();
    store_->restartEntryNumbers();
    store_->registryEntries_.reserve(references.size());
    for (const ArchiveReference reference : references) {
        if (entries_[reference.index]) {
            unarchiver_.fail(QStringLiteral("an entry is listed twice"), {});
            return false;
        }
        EntryRef entry = TavRegistryEntry::createEmpty();
        entry->_setDataStore(store_.get());
        entries_[reference.index] = entry.get();
        store_->registryEntries_.push_back(std::move(entry));
    }
    return true;
}
