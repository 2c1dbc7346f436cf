// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/AttributeParser.h"
#include "model/linux/AttributePolicy.h"
#include "model/linux/RawObject.h"
#include "model/linux/ReadingDetail.h"
#include "model/linux/SysfsRoot.h"

#include <memory>

// Reads one object's directory: attributes, links, and subdirectories that are not objects, as
// nested dictionaries. One reader belongs to one thread.
class ObjectReader
{
public:
    // Called around each step that might not return: mayTake decides whether to take it, returned
    // whether its result counts. Exceptions end the reading.
    class Watch
    {
    public:
        virtual bool mayTake(const SysfsPath &directory, const QByteArray &name) = 0;
        virtual bool returned() = 0;
        // Called in an interrupted step: whether to give it up.
        virtual bool isGivenUp() const = 0;

    protected:
        ~Watch() = default;
    };

    // Deeper objects are named in the properties of the object above. Every object stores its path,
    // so these limits also bound the memory that a hostile tree takes.
    static constexpr qsizetype maxDepth = 10'000; // below a folder of the tree, such as "devices"
    static constexpr qsizetype maxPathSize = 32'768;

    // Reads values as they are now and nothing else, into the members.
    struct Sample
    {
        std::vector<QByteArray> attributes = {}; // below the directory; empty: all
        std::vector<QByteArray> onRequest = {};  // these, too, although they are costly

        bool wants(QByteArrayView path) const; // an attribute, or a folder of some
        bool asksFor(QByteArrayView path) const { return isIn(onRequest, path); }

    private:
        static bool isIn(const std::vector<QByteArray> &list, QByteArrayView path);
    };
    struct Request
    {
        AttributePolicy::Folder folder = AttributePolicy::Folder::Device;
        RawObject::Kind kind = RawObject::Kind::Device; // a guess for a device's folder
        SysfsPath path;
        quint64 inode = 0;
        bool readsOnRequest = false; // only what is too costly for every reading
        bool readsAttributes = true; // false: only names and links
        QByteArray attribute = {};   // below the directory; if set, reads only this one
        std::shared_ptr<const Sample> sample = {}; // null: none
    };
    struct Result
    {
        RawObject object;
        std::vector<Request> below; // the nearest objects below
        std::vector<SysfsPath> filesRead;
    };

    // Directories in forcedDevices are devices even without a uevent file.
    ObjectReader(const SysfsRoot &root, const QSet<SysfsPath> &forcedDevices, Watch &watch,
                 bool recordsFiles, ReadingDetail detail = ReadingDetail::Everything);
    ~ObjectReader();

    Result read(const Request &request);

private:
    struct Directory;
    struct Job;

    bool readDirectory(Job &job, const Directory &directory, RegistryValue::Members &members);
    void readHeader(Job &job, const Directory &directory);
    void readSubdirectory(Job &job, const Directory &parent, const SysfsRoot::Entry &entry,
                          RegistryValue::Members &members);
    bool isKnownFolder(const Job &job, const Directory &directory) const;
    void readPower(Job &job, const Directory &device, RegistryValue::Members &members);
    static void addObject(Job &job, const Directory &parent, const SysfsRoot::Entry &entry,
                          RawObject::Kind kind);
    std::optional<RawObject::Kind> objectKind(const Job &job, const Directory &parent,
                                              const QByteArray &name, const SysfsPath &path);
    bool open(Job &job, const Directory &parent, const QByteArray &name, Directory &directory);
    void readLink(Job &job, const Directory &directory, const SysfsRoot::Entry &entry,
                  RegistryValue::Members &members);
    static bool maySample(const Job &job, AttributePolicy::Rule rule, const Directory &directory,
                          const QByteArray &name);
    void readFile(Job &job, const Directory &directory, const QByteArray &name,
                  RegistryValue::Members &members);
    static bool isConfig(const Directory &directory, const QByteArray &name);
    // Whether policy and request allow reading it; notes what is left out.
    bool mayRead(Job &job, const Directory &directory, const QByteArray &name) const;
    void readMembersOfBus(Job &job, const Directory &devices);
    void readDriversOfBus(Job &job, const Directory &drivers);
    bool isDevice(const Directory &itself) const;
    bool isDevice(const Directory &parent, const QByteArray &name, const SysfsPath &path);
    QByteArray linkText(Job &job, const Directory &directory, const QByteArray &name);
    // None with a reason when it cannot be read; empty reason: not reported.
    std::optional<QByteArrayView> readBytes(const Job &job, const Directory &directory,
                                            const QByteArray &name, std::size_t limit,
                                            QByteArray &reason);
    FileDescriptor openFile(const Directory &directory, const QByteArray &name);
    std::optional<QByteArrayView> askForBytes(const Directory &directory, const QByteArray &name,
                                              std::size_t limit, QByteArray &reason);

    const SysfsRoot &root_;
    DirectoryOpener opener_;
    const QSet<SysfsPath> &forcedDevices_;
    Watch &watch_;
    bool recordsFiles_;
    ReadingDetail detail_;
    TextPool pool_;
    std::unique_ptr<char[]> buffer_;
};
