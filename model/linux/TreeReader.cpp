// SPDX-License-Identifier: Apache-2.0
#include "model/linux/TreeReader.h"

#include "model/linux/ReaderThreads.h"

#include <cerrno>
#include <cstring>

namespace {
using Request = ObjectReader::Request;
using Folder = AttributePolicy::Folder;
using Kind = RawObject::Kind;

constexpr unsigned maxReaders = 4;
} // namespace

TreeReader::TreeReader(std::shared_ptr<const SysfsRoot> root)
    : TreeReader(std::move(root), Options())
{}

TreeReader::TreeReader(std::shared_ptr<const SysfsRoot> root, Options options)
    : root_(std::move(root))
    , options_(options)
    , threadsLeftBehind_(std::make_shared<std::atomic<int>>(0))
{
    if (options_.threads == 0)
        options_.threads = std::clamp(std::thread::hardware_concurrency(), 2U, maxReaders);
}

TreeContents TreeReader::run(const std::stop_token &stop)
{
    TreeContents contents = runFromTop(stop);
    // In trees without uevent files, only links show what is a device.
    if (!stop.stop_requested() && findForcedDevices(contents))
        contents = runFromTop(stop);
    return contents;
}

TreeContents TreeReader::runFromTop(const std::stop_token &stop)
{
    std::vector<RawObject::Unread> unread;
    TreeContents contents = run(firstRequests(unread), true, stop);
    contents.unread = std::move(unread);
    return contents;
}

void TreeReader::learnFrom(const TreeReader &other)
{
    blockedPaths_.unite(other.blockedPaths_);
    forcedDevices_.unite(other.forcedDevices_);
}

RawObject TreeReader::readObject(const Request &request, const std::stop_token &stop)
{
    std::vector<RawObject> objects = run({request}, false, stop).objects;
    return objects.empty() ? RawObject() : std::move(objects.front());
}

std::vector<RawObject> TreeReader::readObjects(std::vector<Request> requests)
{
    return run(std::move(requests), false).objects;
}

std::vector<Request> TreeReader::firstRequests(std::vector<RawObject::Unread> &unread) const
{
    std::vector<Request> requests;
    const auto entriesOf = [&](const SysfsPath &folder) {
        std::vector<SysfsRoot::Entry> entries;
        const FileDescriptor directory = root_->openDirectory(folder);
        const int error = directory ? SysfsRoot::list(directory.get(), entries) : errno;
        if (error != 0 && error != ENOENT)
            unread.push_back({folder.toByteArray(), std::strerror(error)});
        return entries;
    };
    const auto addFolder = [&](const SysfsPath &folder, Folder type, Kind kind) {
        bool any = false;
        for (const SysfsRoot::Entry &entry : entriesOf(folder)) {
            if (entry.type == SysfsRoot::EntryType::Directory) {
                requests.push_back({type, kind, folder.child(entry.name), entry.inode});
                any = any || entry.name == "block";
            } else if (type != Folder::Firmware) { // its top has attributes
                unread.push_back({folder.child(entry.name).toByteArray(), "is no folder"});
            }
        }
        return any;
    };
    addFolder("firmware/devicetree/base", Folder::Firmware, Kind::FirmwareNode);
    addFolder("module", Folder::Module, Kind::Module);
    addFolder("bus", Folder::Bus, Kind::Bus);
    if (!addFolder("class", Folder::Class, Kind::Class)) {
        // Old and partial trees have the folder of block devices only at the top.
        for (const SysfsRoot::Entry &entry : entriesOf({})) {
            if (entry.name == "block" && entry.type == SysfsRoot::EntryType::Directory)
                requests.push_back({Folder::Class, Kind::Class, "block", entry.inode});
        }
    }
    addFolder("devices", Folder::Device, Kind::Container);
    return requests;
}

TreeContents TreeReader::run(std::vector<Request> requests, bool isRecursive,
                             const std::stop_token &stop)
{
    const auto wanted = isRecursive ? options_.threads : static_cast<unsigned>(requests.size());
    const auto threads = std::make_shared<ReaderThreads>(
        ReaderThreads::Plan{.root = root_,
                            .forcedDevices = forcedDevices_,
                            .blockedPaths = blockedPaths_,
                            .threadsLeftBehind = threadsLeftBehind_,
                            .patience = options_.patience,
                            .threads = std::min(options_.threads, wanted),
                            .interrupts = options_.interrupts,
                            .recordsFiles = options_.recordsFiles,
                            .isRecursive = isRecursive,
                            .detail = isRecursive ? options_.detail : ReadingDetail::Everything,
                            .slowStep = slowStep_},
        std::move(requests));
    TreeContents contents = threads->perform(stop);
    blockedPaths_ = threads->blockedPaths();
    return contents;
}

bool TreeReader::findForcedDevices(const TreeContents &contents)
{
    QSet<SysfsPath> known;
    for (const RawObject &object : contents.objects) {
        if (object.kind == Kind::Device)
            known.insert(object.path);
    }
    bool found = false;
    for (const RawObject &object : contents.objects) {
        if (object.kind != Kind::Bus && object.kind != Kind::Class)
            continue;
        for (const RawObject::Link &link : object.links) {
            const bool isDevice = link.target.isBelow("devices") &&
                                  (object.kind == Kind::Class ? !link.name.contains('/')
                                                              : link.name.startsWith("devices/"));
            const auto exists = [&] {
                return root_->openDirectory(link.target) || errno == EACCES;
            };
            if (!isDevice || known.contains(link.target) || forcedDevices_.contains(link.target) ||
                !exists())
                continue;
            forcedDevices_.insert(link.target);
            found = true;
        }
    }
    return found;
}
