// SPDX-License-Identifier: Apache-2.0
// Reading on request: attributes that are slow or wake the device.
#include "model/linux/LinuxRegistryService.h"
#include "model/linux/ReadingWait.h"
#include "platform/host/BootClock.h"
#include "platform/runloop/RunLoop.h"

#include <set>

namespace {
using Kind = RawObject::Kind;
using Folder = AttributePolicy::Folder;

Folder folderOf(Kind kind)
{
    switch (kind) {
    case Kind::Bus:
        return Folder::Bus;
    case Kind::Class:
        return Folder::Class;
    case Kind::Driver:
        return Folder::Driver;
    case Kind::Module:
        return Folder::Module;
    case Kind::FirmwareNode:
        return Folder::Firmware;
    default:
        return Folder::Device;
    }
}

std::vector<QByteArray> inUtf8(const QStringList &texts)
{
    std::vector<QByteArray> encoded;
    for (const QString &text : texts)
        encoded.push_back(text.toUtf8());
    return encoded;
}

ObjectSample sampleOf(RawObject read)
{
    ObjectSample sample{.isThere = true,
                        .time = BootClock::now(),
                        .members = std::move(read.members),
                        .unanswered = {}};
    for (const RawObject::Unread &unread : read.unread) {
        if (RawObject::isUnanswered(unread.reason))
            sample.unanswered.append(QString::fromUtf8(unread.path));
    }
    return sample;
}

bool hasDirectory(const HostObject &object)
{
    return object.kind != Kind::Root && object.kind != Kind::Host && object.kind != Kind::Binding;
}
} // namespace

bool LinuxRegistryService::prepareObject(RegistryObject object)
{
    const int index = objects_.indexOf(object);
    if (index != HostObject::none && hasDirectory(graph()->at(index))) {
        const quint64 node = graph()->at(index).nodeID;
        const auto read = readAllOnRequest(requestFor(index));
        if (!read)
            return false;
        requested_.add(node, *read);
    }
    // Children, driver and names need a reading of all objects.
    return prepare();
}

void LinuxRegistryService::readWhole(std::span<const RegistryObject> objects)
{
    if (treeReader_.detail() == ReadingDetail::Everything)
        return;
    std::set<int> indices;
    for (const RegistryObject object : objects) {
        const int index = objects_.indexOf(object);
        if (index != HostObject::none && hasDirectory(graph()->at(index)))
            indices.insert(index);
    }
    std::vector<ObjectReader::Request> requests;
    for (const int index : indices) {
        requests.push_back(requestFor(index));
        requests.back().readsOnRequest = false;
    }
    for (RawObject &read : treeReader_.readObjects(std::move(requests))) {
        const int index = graph()->withPath(read.path);
        const bool isGone = read.members.empty() && read.unread.empty();
        if (!isGone)
            graph()->addWhole(index, std::move(read), requested_, udev_);
    }
}

ObjectReader::Request LinuxRegistryService::requestFor(int index) const
{
    const HostObject &object = graph()->at(index);
    return {.folder = folderOf(object.kind),
            .kind = object.kind,
            .path = object.path,
            .inode = object.inode,
            .readsOnRequest = true};
}

std::optional<RawObject>
LinuxRegistryService::readAllOnRequest(const ObjectReader::Request &request)
{
    ReadingWait wait;
    std::stop_source stop;
    TreeReader own = treeReader_;
    own.setSlowStep(wait.slowStep());
    // In a thread, or in this one when none can be started.
    auto reader =
        std::async([treeReader = std::move(own), request, token = stop.get_token()]() mutable {
            RawObject object = treeReader.readObject(request, token);
            return std::pair(std::move(treeReader), std::move(object));
        });
    RunLoop::main().wait(wait, [&](auto timeout) {
        return wait.isCancelled() || reader.wait_for(timeout) != std::future_status::timeout;
    });
    if (wait.isCancelled())
        stop.request_stop();
    auto [treeReader, read] = reader.get();
    treeReader_.learnFrom(treeReader);
    return wait.isCancelled() ? std::nullopt : std::optional(std::move(read));
}

bool LinuxRegistryService::mayReadOnRequest(RegistryObject object, const QString &attribute)
{
    const int index = objects_.indexOf(object);
    if (index == HostObject::none)
        return false;
    const auto &unread = graph()->at(index).unread;
    const QByteArray path = attribute.toUtf8();
    return std::any_of(unread.begin(), unread.end(), [&](const RawObject::Unread &its) {
        return its.isOnRequest && its.path == path;
    });
}

void LinuxRegistryService::readOnRequest(RegistryObject object, const QString &attribute,
                                         std::function<void()> ready)
{
    if (!mayReadOnRequest(object, attribute)) {
        RunLoop::performLater(mainThread_, std::move(ready));
        return;
    }
    const int index = objects_.indexOf(object);
    ObjectReader::Request request = requestFor(index);
    request.attribute = attribute.toUtf8();
    objects_.retain(object);
    const quint64 number = ++attributeReadingNumber_;
    AttributeReading &reading = attributeReadings_[number];
    reading = {object, graph()->at(index).nodeID, std::move(ready), nullptr};
    const auto read = [treeReader = treeReader_, request](const std::stop_token &stop) mutable {
        RawObject found = treeReader.readObject(request, stop);
        return std::pair(std::move(treeReader), std::move(found));
    };
    const auto finished = [this, number] {
        QMetaObject::invokeMethod(
            &mainThread_,
            [this, number] {
                RunLoop::main().performInDefaultMode(alive_,
                                                     [this, number] { attributeRead(number); });
            },
            Qt::QueuedConnection);
    };
    reading.task =
        std::make_unique<BackgroundTask<std::pair<TreeReader, RawObject>>>(read, finished);
}

void LinuxRegistryService::attributeRead(quint64 number)
{
    const AttributeReading reading = std::move(attributeReadings_.extract(number).mapped());
    const auto [treeReader, read] = reading.task->take();
    treeReader_.learnFrom(treeReader);
    const int index = objects_.indexOf(reading.object);
    objects_.release(reading.object);
    // It may have vanished, or returned as another object.
    if (index != HostObject::none && graph()->at(index).nodeID == reading.node) {
        requested_.add(reading.node, read);
        graph()->addRequested(index, requested_);
        if (preparation_)
            readDuringPreparation_.push_back(reading.node);
    }
    reading.ready();
}

void LinuxRegistryService::sample(const ObjectSample::Request &request,
                                  std::function<void(const ObjectSample &)> ready)
{
    const quint64 number = ++samplingNumber_;
    Sampling &sampling = samplings_[number];
    sampling.ready = std::move(ready);
    const auto finished = [this, number] {
        QMetaObject::invokeMethod(
            &mainThread_,
            [this, number] {
                RunLoop::main().performInDefaultMode(alive_,
                                                     [this, number] { sampleRead(number); });
            },
            Qt::QueuedConnection);
    };
    const SysfsPath path = SysfsPath::ofKernelPath(request.kernelPath);
    const int index = graph() && !path.isNull() ? graph()->withPath(path) : HostObject::none;
    if (index == HostObject::none || !hasDirectory(graph()->at(index)))
        return finished();
    ObjectReader::Request wanted = requestFor(index);
    wanted.readsOnRequest = false;
    wanted.sample = std::make_shared<ObjectReader::Sample>(
        ObjectReader::Sample{inUtf8(request.attributes), inUtf8(request.onRequest)});
    if (!samplingReader_)
        samplingReader_ = treeReader_;
    const auto read = [treeReader = *samplingReader_, root = root_,
                       wanted](const std::stop_token &stop) mutable {
        ObjectSample sample;
        if (root->inodeOf(wanted.path) != 0)
            sample = sampleOf(treeReader.readObject(wanted, stop));
        return std::pair(std::move(treeReader), std::move(sample));
    };
    sampling.task = std::make_unique<SampleTask>(read, finished);
}

void LinuxRegistryService::sampleRead(quint64 number)
{
    const Sampling sampling = std::move(samplings_.extract(number).mapped());
    ObjectSample sample;
    if (sampling.task) {
        auto [treeReader, read] = sampling.task->take();
        if (samplingReader_)
            samplingReader_->learnFrom(treeReader);
        sample = std::move(read);
    }
    sampling.ready(sample);
}
