// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ObjectReader.h"

#include "model/linux/StructuralAttributes.h"
#include "model/linux/SysfsPlaces.h"

#include <QUtf8StringView>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>

namespace {
constexpr std::size_t textLimit = 4096;
constexpr std::size_t dataLimit = 65536;
constexpr int maxNesting = 16;
constexpr char liesTooDeep[] = "lies too deep";
constexpr int maxUnanswered = 2; // attributes of an object; then the rest is skipped

QByteArray join(const QByteArray &directory, const QByteArray &name)
{
    return directory.isEmpty() ? name : directory + '/' + name;
}

QByteArrayView nameOf(const SysfsRoot::Entry &entry)
{
    return entry.name;
}
QByteArrayView nameOf(QByteArrayView name)
{
    return name;
}

// The entries must be sorted by name.
bool contains(const std::vector<SysfsRoot::Entry> &entries, QByteArrayView name)
{
    return std::binary_search(entries.begin(), entries.end(), name,
                              [](const auto &a, const auto &b) { return nameOf(a) < nameOf(b); });
}

// The size without a character that was cut off at the end.
std::size_t wholeCharacters(const char *bytes, std::size_t size)
{
    constexpr std::size_t maxSize = 4;
    for (std::size_t back = 1; back < maxSize && back <= size; ++back) {
        const auto byte = static_cast<unsigned char>(bytes[size - back]);
        if (byte < 0x80)
            break;
        if (byte >= 0xc0)
            return size - back;
    }
    return size;
}

// None when the watch refuses the step. The step may touch only the reader's own data: when it
// returns, the program may have ended except for this thread.
template<class Step>
auto take(ObjectReader::Watch &watch, const SysfsPath &directory, const QByteArray &name, Step step)
    -> std::optional<decltype(step())>
{
    if (!watch.mayTake(directory, name))
        return std::nullopt;
    auto result = step();
    if (!watch.returned())
        return std::nullopt;
    return result;
}

bool isBinary(const char *bytes, std::size_t size)
{
    return std::memchr(bytes, 0, size) ||
           !QUtf8StringView(bytes, static_cast<qsizetype>(wholeCharacters(bytes, size)))
                .isValidUtf8();
}
} // namespace

bool ObjectReader::Sample::wants(QByteArrayView path) const
{
    return attributes.empty() || isIn(attributes, path);
}

// Of a value in a file or in a folder, the path of the value may be given.
bool ObjectReader::Sample::isIn(const std::vector<QByteArray> &list, QByteArrayView path)
{
    return std::any_of(list.begin(), list.end(), [&](const QByteArray &wanted) {
        return wanted.startsWith(path) &&
               (wanted.size() == path.size() || wanted.at(path.size()) == '/');
    });
}

struct ObjectReader::Directory
{
    SysfsPath path;
    QByteArray below = {}; // relative to the object's directory; empty: itself
    int depth = 0;
    FileDescriptor descriptor = {};
    std::vector<SysfsRoot::Entry> entries = {};

    // 0, or the error number why the list is incomplete.
    int list(FileDescriptor opened)
    {
        descriptor = std::move(opened);
        return descriptor ? SysfsRoot::list(descriptor.get(), entries) : errno;
    }
};

// PCI configuration space: only the first part is safe to read, and only while the device is awake.
bool ObjectReader::isConfig(const Directory &directory, const QByteArray &name)
{
    return name == "config" && directory.below.isEmpty();
}

struct ObjectReader::Job
{
    const Request &request;
    Result result;
    AttributePolicy policy;
    bool isSuspended = false;  // only known for PCI devices and when reading on request
    int unanswered = 0;        // attributes so far
    RegistryValue uevent = {}; // read first: names and classes depend on it
    StructuralAttributes structural = {};
    // Links read first, by name.
    std::vector<std::pair<QByteArray, QByteArray>> linkTexts = {};

    void noteUnread(const Directory &directory, const QByteArray &name, const QByteArray &reason,
                    bool isOnRequest = false)
    {
        result.object.unread.push_back({join(directory.below, name), reason, isOnRequest});
    }
    // None: did not answer. Does not report files that have vanished.
    void noteUnread(const Directory &directory, const QByteArray &name, std::optional<int> error)
    {
        if (!error)
            noteUnread(directory, name, RawObject::noAnswer);
        else if (*error != 0 && *error != ENOENT)
            noteUnread(directory, name, std::strerror(*error));
    }
};

ObjectReader::ObjectReader(const SysfsRoot &root, const QSet<SysfsPath> &forcedDevices,
                           Watch &watch, bool recordsFiles, ReadingDetail detail)
    : root_(root)
    , opener_(root.opener())
    , forcedDevices_(forcedDevices)
    , watch_(watch)
    , recordsFiles_(recordsFiles)
    , detail_(detail)
    , buffer_(std::make_unique_for_overwrite<char[]>(dataLimit))
{}

ObjectReader::~ObjectReader() = default;

ObjectReader::Result ObjectReader::read(const Request &request)
{
    Job job{request, {}, AttributePolicy({.folder = request.folder})};
    RawObject &object = job.result.object;
    object.kind = request.kind;
    object.inode = request.inode;
    object.path = request.path;
    object.kernelName = request.path.name();
    Directory directory{request.path};
    const auto error =
        take(watch_, request.path, {}, [&] { return directory.list(opener_.open(request.path)); });
    job.noteUnread(directory, RawObject::itself, error);
    if (error && (directory.descriptor || *error == ENOENT)) {
        readHeader(job, directory);
        readDirectory(job, directory, object.members);
    }
    return std::move(job.result);
}

// Reads what decides how the rest is read.
void ObjectReader::readHeader(Job &job, const Directory &directory)
{
    using Folder = AttributePolicy::Folder;
    if (job.request.folder != Folder::Device)
        return;
    RawObject &object = job.result.object;
    object.kind = isDevice(directory) ? RawObject::Kind::Device : RawObject::Kind::Container;
    const auto targetName = [&](const QByteArray &link) {
        if (!contains(directory.entries, link))
            return QByteArray();
        const QByteArray text = linkText(job, directory, link);
        job.linkTexts.emplace_back(link, text);
        return SysfsPath(text).name();
    };
    AttributePolicy::Context context{.folder = job.request.folder,
                                     .subsystem = targetName("subsystem"),
                                     .driver = targetName("driver"),
                                     .path = object.path};
    if (context.subsystem.isEmpty() && SysfsPlaces::isSystemDevice(object.path))
        context.subsystem = SysfsPlaces::subsystemOfSystemDevice(object.path);
    const auto textOf = [&](const QByteArray &name) {
        QByteArray reason;
        const auto bytes = readBytes(job, directory, name, textLimit, reason);
        return bytes ? QByteArray(bytes->data(), bytes->size()).trimmed() : QByteArray();
    };
    constexpr uint interfaceUp = 1;
    const bool isWhole = detail_ == ReadingDetail::Everything;
    if (context.subsystem == "net" && isWhole)
        context.isInterfaceDown = !(textOf("flags").toUInt(nullptr, 0) & interfaceUp);
    const auto isSuspended = [&] { return textOf("power/runtime_status") == "suspended"; };
    if (context.subsystem == "pci" && isWhole)
        job.isSuspended = context.isSuspended = isSuspended();
    else if (job.request.readsOnRequest ||
             (job.request.sample && !job.request.sample->onRequest.empty()))
        job.isSuspended = isSuspended();
    job.policy = AttributePolicy(context);
    if (!isWhole)
        job.structural = StructuralAttributes(context.subsystem);
    const bool isWanted = job.request.sample ? job.request.sample->wants("uevent")
                                             : isWhole || job.structural.contains(object, "uevent");
    if (isWanted && !job.request.readsOnRequest && contains(directory.entries, "uevent") &&
        job.policy.rule({}, "uevent") == AttributePolicy::Rule::Always) {
        QByteArray reason;
        if (const auto bytes = readBytes(job, directory, "uevent", dataLimit, reason))
            job.uevent = parseAttribute("uevent", *bytes, pool_);
    }
    job.structural.noteUevent(job.uevent);
}

// Whether it held anything of the object itself, or nothing at all.
bool ObjectReader::readDirectory(Job &job, const Directory &directory,
                                 RegistryValue::Members &members)
{
    const std::size_t devicesBefore = job.result.below.size();
    members.reserve(directory.entries.size());
    for (const SysfsRoot::Entry &entry : directory.entries) {
        switch (entry.type) {
        case SysfsRoot::EntryType::Directory:
            readSubdirectory(job, directory, entry, members);
            break;
        case SysfsRoot::EntryType::Link:
            if (!job.request.readsOnRequest && !job.request.sample)
                readLink(job, directory, entry, members);
            break;
        case SysfsRoot::EntryType::File:
            readFile(job, directory, entry.name, members);
            break;
        case SysfsRoot::EntryType::Other:
            job.noteUnread(directory, entry.name, "neither file nor folder nor link");
            break;
        }
    }
    return !members.empty() || job.result.below.size() == devicesBefore;
}

void ObjectReader::readSubdirectory(Job &job, const Directory &parent,
                                    const SysfsRoot::Entry &entry, RegistryValue::Members &members)
{
    using Folder = AttributePolicy::Folder;
    const Folder folder = job.request.folder;
    const bool isBusTop = folder == Folder::Bus && parent.below.isEmpty();
    if (AttributePolicy::skipsDirectory(folder, entry.name))
        return;
    if (parent.depth >= maxNesting)
        return job.noteUnread(parent, entry.name, liesTooDeep);
    Directory directory{parent.path.child(entry.name), join(parent.below, entry.name),
                        parent.depth + 1};
    const QByteArray &asked = job.request.attribute;
    if (!asked.isNull() && !asked.startsWith(directory.below + '/'))
        return;
    if (job.request.sample && !job.request.sample->wants(directory.below))
        return;
    if (isKnownFolder(job, directory))
        return entry.name == "power" ? readPower(job, parent, members) : void();
    if (const auto kind = objectKind(job, parent, entry.name, directory.path))
        return addObject(job, parent, entry, *kind);
    if (!open(job, parent, entry.name, directory))
        return;
    // A folder that can be listed but not entered could not be checked before.
    if (folder == Folder::Device && contains(directory.entries, "uevent"))
        return addObject(job, parent, entry, RawObject::Kind::Device);
    if (isBusTop && entry.name == "devices")
        return readMembersOfBus(job, directory);
    if (isBusTop && entry.name == "drivers")
        return readDriversOfBus(job, directory);
    RegistryValue::Members nested;
    const bool ownsSomething = readDirectory(job, directory, nested);
    if (ownsSomething && !(job.request.readsOnRequest && nested.empty()))
        members.push_back({pool_.text(entry.name), RegistryValue::dictionary(std::move(nested))});
}

// Whether a folder need not be listed for the structure, as the kernel fills it. Others may have
// put anything into a recorded tree.
bool ObjectReader::isKnownFolder(const Job &job, const Directory &directory) const
{
    if (detail_ == ReadingDetail::Everything || !root_.isKernels())
        return false;
    const RawObject &object = job.result.object;
    const bool isPower = object.kind == RawObject::Kind::Device && directory.below == "power";
    return isPower || job.structural.noneIn(object, directory.below);
}

// The one attribute that states and planes depend on, without listing the others.
void ObjectReader::readPower(Job &job, const Directory &device, RegistryValue::Members &members)
{
    const QByteArray name = "power/runtime_status";
    if (!job.structural.contains(job.result.object, name))
        return;
    QByteArray reason;
    const auto bytes = readBytes(job, device, name, textLimit, reason);
    if (recordsFiles_ && !RawObject::isUnanswered(reason))
        job.result.filesRead.push_back(device.path.child(name));
    if (bytes)
        members.push_back({pool_.text("power"),
                           RegistryValue::dictionary({{pool_.text("runtime_status"),
                                                       parseAttribute(name, *bytes, pool_)}})});
    else if (!reason.isEmpty())
        job.noteUnread(device, name, reason);
    job.unanswered += reason == RawObject::noAnswer;
}

void ObjectReader::addObject(Job &job, const Directory &parent, const SysfsRoot::Entry &entry,
                             RawObject::Kind kind)
{
    const SysfsPath path = parent.path.child(entry.name);
    if (path.size() > maxPathSize || path.depth() > maxDepth + 1)
        return job.noteUnread(parent, entry.name, liesTooDeep);
    job.result.below.push_back({job.request.folder, kind, path, entry.inode});
}

// None for a subdirectory that is part of the object.
std::optional<RawObject::Kind> ObjectReader::objectKind(const Job &job, const Directory &parent,
                                                        const QByteArray &name,
                                                        const SysfsPath &path)
{
    using Folder = AttributePolicy::Folder;
    if (job.request.folder == Folder::Firmware)
        return RawObject::Kind::FirmwareNode;
    if (job.request.folder != Folder::Device)
        return std::nullopt;
    if (parent.path == "devices/virtual")
        return RawObject::Kind::Container;
    return isDevice(parent, name, path) ? std::optional(RawObject::Kind::Device) : std::nullopt;
}

// Whether any of it can be read.
bool ObjectReader::open(Job &job, const Directory &parent, const QByteArray &name,
                        Directory &directory)
{
    const auto error = take(watch_, parent.path, name, [&] {
        return directory.list(
            FileDescriptor(openat(parent.descriptor.get(), name.constData(),
                                  O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC)));
    });
    job.noteUnread(parent, name, error);
    job.unanswered += !error;
    return error && directory.descriptor;
}

// The members are objects; the bus keeps only its links to them.
void ObjectReader::readMembersOfBus(Job &job, const Directory &devices)
{
    for (const SysfsRoot::Entry &entry : devices.entries) {
        if (entry.type != SysfsRoot::EntryType::Link) {
            job.noteUnread(devices, entry.name, "is no link");
            continue;
        }
        const QByteArray text = linkText(job, devices, entry.name);
        const SysfsPath target = SysfsRoot::resolveLink(devices.path, text);
        if (!target.isNull())
            job.result.object.links.push_back({join(devices.below, entry.name), target});
        else if (!text.isNull())
            job.noteUnread(devices, entry.name, "leads out of the tree");
    }
}

void ObjectReader::readDriversOfBus(Job &job, const Directory &drivers)
{
    for (const SysfsRoot::Entry &entry : drivers.entries) {
        if (entry.type == SysfsRoot::EntryType::Directory)
            job.result.below.push_back({AttributePolicy::Folder::Driver, RawObject::Kind::Driver,
                                        drivers.path.child(entry.name), entry.inode});
        else
            job.noteUnread(drivers, entry.name, "is no folder");
    }
}

bool ObjectReader::isDevice(const Directory &itself) const
{
    return contains(itself.entries, "uevent") || forcedDevices_.contains(itself.path) ||
           SysfsPlaces::isSystemDevice(itself.path) ||
           (SysfsPlaces::isSystemFolder(itself.path.parent()) &&
            contains(itself.entries, "subsystem"));
}

// Checks for files without listing: a device is listed later as an object.
bool ObjectReader::isDevice(const Directory &parent, const QByteArray &name, const SysfsPath &path)
{
    if (forcedDevices_.contains(path) || SysfsPlaces::isSystemDevice(path))
        return true;
    if (name == "power") // in every device, and never a device
        return false;
    const auto has = [&](const char *file) {
        const QByteArray below = name + file;
        return take(watch_, parent.path, name,
                    [&] {
                        return faccessat(parent.descriptor.get(), below.constData(), F_OK,
                                         AT_SYMLINK_NOFOLLOW) == 0;
                    })
            .value_or(false);
    };
    return has("/uevent") || (SysfsPlaces::isSystemFolder(parent.path) && has("/subsystem"));
}

// Null when it cannot be read.
QByteArray ObjectReader::linkText(Job &job, const Directory &directory, const QByteArray &name)
{
    QByteArray text;
    const auto error = take(watch_, directory.path, name, [&] {
        text = SysfsRoot::readLink(directory.descriptor.get(), name);
        return text.isNull() ? errno : 0;
    });
    job.noteUnread(directory, name, error);
    return error ? text : QByteArray();
}

void ObjectReader::readLink(Job &job, const Directory &directory, const SysfsRoot::Entry &entry,
                            RegistryValue::Members &members)
{
    const auto known = std::find_if(job.linkTexts.begin(), job.linkTexts.end(),
                                    [&](const auto &link) { return link.first == entry.name; });
    const QByteArray text = directory.below.isEmpty() && known != job.linkTexts.end()
                                ? known->second
                                : linkText(job, directory, entry.name);
    if (text.isNull())
        return;
    const SysfsPath target = SysfsRoot::resolveLink(directory.path, text);
    const QByteArray &shown = target.isNull() ? text : target.toByteArray();
    members.push_back({pool_.text(entry.name), RegistryValue::string(QString::fromUtf8(shown))});
    if (target.isNull())
        return;
    RawObject &object = job.result.object;
    object.links.push_back({join(directory.below, entry.name), target});
    if (directory.below.isEmpty() && entry.name == "driver")
        object.driverLinkInode = entry.inode;
}

bool ObjectReader::mayRead(Job &job, const Directory &directory, const QByteArray &name) const
{
    using Rule = AttributePolicy::Rule;
    const Request &request = job.request;
    const QByteArray &asked = request.attribute;
    if (!asked.isNull() && asked != join(directory.below, name))
        return false;
    if (detail_ == ReadingDetail::Structure &&
        !job.structural.contains(job.result.object, join(directory.below, name)))
        return false;
    const Rule rule = job.policy.rule(directory.below, name);
    if (request.sample)
        return maySample(job, rule, directory, name);
    const auto leaveOut = [&](const QByteArray &why) {
        if (!why.isEmpty())
            job.noteUnread(directory, name, RawObject::leftOut + why, rule == Rule::OnRequest);
        return false;
    };
    if (!request.readsOnRequest)
        return rule == Rule::Always || leaveOut(job.policy.reason(directory.below, name));
    if (rule == Rule::Never || (rule == Rule::Always && asked.isNull()))
        return false;
    return !isConfig(directory, name) || !job.isSuspended || leaveOut("the device is suspended");
}

bool ObjectReader::maySample(const Job &job, AttributePolicy::Rule rule, const Directory &directory,
                             const QByteArray &name)
{
    using Rule = AttributePolicy::Rule;
    const Sample &sample = *job.request.sample;
    const QByteArray path = join(directory.below, name);
    if (!sample.wants(path))
        return false;
    return (rule == Rule::Always || (rule == Rule::OnRequest && sample.asksFor(path))) &&
           !(isConfig(directory, name) && job.isSuspended);
}

void ObjectReader::readFile(Job &job, const Directory &directory, const QByteArray &name,
                            RegistryValue::Members &members)
{
    if (!mayRead(job, directory, name))
        return;
    if (name == "uevent" && directory.below.isEmpty() && !job.uevent.isNone()) {
        if (recordsFiles_)
            job.result.filesRead.push_back(directory.path.child(name));
        members.push_back({pool_.text(name), std::exchange(job.uevent, {})});
        return;
    }
    QByteArray reason;
    const std::size_t limit = isConfig(directory, name) ? AttributePolicy::configBytes : dataLimit;
    const auto bytes = readBytes(job, directory, name, limit, reason);
    if (recordsFiles_ && !RawObject::isUnanswered(reason))
        job.result.filesRead.push_back(directory.path.child(name));
    RawObject &object = job.result.object;
    const bool isOnRequest = job.request.readsOnRequest;
    if (bytes && isOnRequest)
        object.requested.push_back(
            {join(directory.below, name), parseAttribute(name, *bytes, pool_)});
    else if (bytes)
        members.push_back({pool_.text(name), parseAttribute(name, *bytes, pool_)});
    else if (!reason.isEmpty())
        job.noteUnread(directory, name, reason, isOnRequest && !RawObject::isUnanswered(reason));
    job.unanswered += reason == RawObject::noAnswer;
}

std::optional<QByteArrayView> ObjectReader::readBytes(const Job &job, const Directory &directory,
                                                      const QByteArray &name, std::size_t limit,
                                                      QByteArray &reason)
{
    if (!job.request.readsAttributes || job.unanswered >= maxUnanswered) {
        reason = RawObject::notAsked;
        return std::nullopt;
    }
    const auto answer = take(watch_, directory.path, name, [&] {
        reason.clear();
        return askForBytes(directory, name, limit, reason);
    });
    if (answer)
        return *answer;
    reason = RawObject::noAnswer;
    return std::nullopt;
}

FileDescriptor ObjectReader::openFile(const Directory &directory, const QByteArray &name)
{
    while (true) {
        FileDescriptor file(openat(directory.descriptor.get(), name.constData(),
                                   O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NOCTTY));
        if (file || errno != EINTR || watch_.isGivenUp())
            return file;
    }
}

std::optional<QByteArrayView> ObjectReader::askForBytes(const Directory &directory,
                                                        const QByteArray &name, std::size_t limit,
                                                        QByteArray &reason)
{
    const FileDescriptor file = openFile(directory, name);
    struct stat status;
    const auto isWriteOnly = [&status] {
        return (status.st_mode & (S_IRUSR | S_IRGRP | S_IROTH)) == 0;
    };
    if (!file) {
        const int error = errno;
        const bool writeOnly = error == EACCES &&
                               fstatat(directory.descriptor.get(), name.constData(), &status,
                                       AT_SYMLINK_NOFOLLOW) == 0 &&
                               isWriteOnly();
        if (!writeOnly && error != ENOENT)
            reason = std::strerror(error);
        return std::nullopt;
    }
    // The kernel refuses to open a write-only attribute; a recorded tree does not refuse its owner.
    if (!root_.isKernels() && fstat(file.get(), &status) == 0 && isWriteOnly())
        return std::nullopt;
    std::size_t size = 0;
    std::size_t wanted = std::min(limit, textLimit);
    while (size < wanted) {
        const ssize_t count = ::read(file.get(), buffer_.get() + size, wanted - size);
        if (count < 0 && errno == EINTR && !watch_.isGivenUp())
            continue;
        if (count < 0 && size == 0) {
            reason = std::strerror(errno);
            return std::nullopt;
        }
        if (count <= 0)
            break;
        size += static_cast<std::size_t>(count);
        if (size < textLimit)
            break; // a short read is the whole attribute
        if (size == textLimit && isBinary(buffer_.get(), size))
            wanted = limit;
        else if (size == textLimit)
            size = wanted = wholeCharacters(buffer_.get(), size);
    }
    return QByteArrayView(buffer_.get(), static_cast<qsizetype>(size));
}
