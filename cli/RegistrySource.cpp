// SPDX-License-Identifier: Apache-2.0
#include "cli/RegistrySource.h"

#include "cli/CommandError.h"
#include "cli/CommandInput.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/archive/ArchiveFormat.h"
#include "platform/documents/DocumentFile.h"
#include "store/DataStoreDecoder.h"
#include "store/FileVersionExceptions.h"

#include <QFile>
#include <QFileInfo>

namespace {
const QString defaultSysfs = QStringLiteral("/sys");

bool checkBeginning(const QByteArray &bytes, DocumentError &error)
{
    if (bytes.startsWith(ArchiveFormat::signature))
        return true;
    error.reason = RegistrySource::tr("it is empty or damaged, or no Vandrel snapshot");
    return false;
}
} // namespace

RegistrySource::RegistrySource(const CommandInput &input)
    : RegistrySource(input.isSet("sysfs") ? input.value("sysfs") : defaultSysfs,
                     input.isSet("file") ? input.value("file") : QString())
{}

RegistrySource::RegistrySource(QString sysfs, QString file)
    : sysfs_(std::move(sysfs))
    , file_(std::move(file))
{}

RegistrySource::~RegistrySource() = default;

void RegistrySource::openService(Need need)
{
    TreeReader::Options options;
    if (need == Need::Structure)
        options.detail = ReadingDetail::Structure;
    auto service = LinuxRegistryService::create(sysfs_, options);
    if (!service)
        throw CommandError{service.error().message()};
    (*service)->setEventSourceFactory([] { return nullptr; }); // nobody would receive them
    service_ = std::move(*service);
}

TavDataStore &RegistrySource::store(Need need)
{
    if (store_)
        return *store_;
    if (!isSnapshot()) {
        openService(need);
        return reread();
    }
    store_ = decode();
    return *store_;
}

std::unique_ptr<RegistrySource> RegistrySource::named(const QString &argument)
{
    if (QFileInfo(argument).isDir())
        return std::make_unique<RegistrySource>(argument, QString());
    return std::make_unique<RegistrySource>(QString(), argument);
}

TavDataStore &RegistrySource::reread()
{
    QCoreApplication::sendPostedEvents(); // left by the reading before: no event loop runs
    store_ = TavDataStore::captureOnce(*service_);
    if (!store_ || !store_->registryRoot())
        throw CommandError{tr("The registry cannot be read.")};
    return *store_;
}

void RegistrySource::readWhole(std::span<TavRegistryEntry *const> entries)
{
    store_->readWhole(entries);
}

bool RegistrySource::isRunningKernel() const
{
    return !isSnapshot() && QFileInfo(sysfs_).canonicalFilePath() == defaultSysfs;
}

QByteArray RegistrySource::content() const
{
    DocumentError error;
    if (file_ != QLatin1String("-")) {
        const auto bytes = DocumentFile::read(file_, checkBeginning, error);
        if (!bytes)
            throw CommandError{QStringLiteral("%1: %2").arg(file_, error.reason)};
        return *bytes;
    }
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        throw CommandError{input.errorString()};
    const QByteArray bytes = input.read(DocumentFile::maxSize);
    if (!checkBeginning(bytes, error))
        throw CommandError{tr("Standard input: %1").arg(error.reason)};
    return bytes;
}

std::unique_ptr<TavDataStore> RegistrySource::decode() const
{
    std::unique_ptr<TavDataStore> store;
    QString problem = tr("it is damaged");
    try {
        store = DataStoreDecoder::decode(content());
    } catch (const TavOldUnsupportedFileVersionException &) {
        problem = tr("it was saved by an early version, in a form that is no longer read");
    } catch (const TavNewUnsupportedFileVersionException &) {
        problem = tr("it was saved by a newer version, in a form that this one does not know");
    }
    if (!store || !store->registryRoot())
        throw CommandError{QStringLiteral("%1: %2").arg(
            file_ == QLatin1String("-") ? tr("Standard input") : file_, problem)};
    return store;
}
