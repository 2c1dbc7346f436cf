#pragma once

#include "model/linux/AttributeParser.h"
#include "model/linux/AttributePolicy.h"
#include "model/linux/SweepObject.h"
#include "model/linux/SysfsRoot.h"

#include <functional>
#include <memory>

// Reads one object's directory: its attributes, its links, and its subdirectories that are no
// objects, as nested dictionaries. One reader belongs to one thread.
class ObjectReader
{
public:
    // Told before each step that might not return; answers whether to take it.
    using Permission = std::function<bool(const QByteArray &directory, const QByteArray &name)>;

    struct Request
    {
        AttributePolicy::Folder folder = AttributePolicy::Folder::Device;
        SweepObject::Kind kind = SweepObject::Kind::Device;
        QByteArray path;
        quint64 inode = 0;
        bool readsOnRequest = false; // what is too costly for every sweep, and nothing else
    };
    struct Result
    {
        SweepObject object;
        std::vector<Request> below; // the objects nearest to it on each way down
        std::vector<QByteArray> filesRead;
    };

    // Directories at forcedDevices are devices even without a uevent file.
    ObjectReader(const SysfsRoot &root, const QSet<QByteArray> &forcedDevices,
                 Permission permission, bool recordsFiles);
    ~ObjectReader();

    Result read(const Request &request);

private:
    struct Directory;
    struct Job;

    bool readDirectory(Job &job, const Directory &directory, RegistryValue::Members &members);
    void readHeader(Job &job, const Directory &directory);
    void readSubdirectory(Job &job, const Directory &parent, const SysfsRoot::Entry &entry,
                          RegistryValue::Members &members);
    void readLink(Job &job, const Directory &directory, const SysfsRoot::Entry &entry,
                  RegistryValue::Members &members);
    void readFile(Job &job, const Directory &directory, const QByteArray &name,
                  RegistryValue::Members &members);
    void readMembersOfBus(Job &job, const Directory &devices);
    void readDriversOfBus(Job &job, const Directory &drivers);
    bool isDevice(const Directory &parent, const QByteArray &name, const QByteArray &path) const;
    // None with a reason (empty: not worth telling) when it cannot be read.
    std::optional<QByteArrayView> readBytes(const Directory &directory, const QByteArray &name,
                                            std::size_t limit, QByteArray &reason);

    const SysfsRoot &root_;
    const QSet<QByteArray> &forcedDevices_;
    Permission permission_;
    bool recordsFiles_;
    TextPool pool_;
    std::unique_ptr<char[]> buffer_;
};
