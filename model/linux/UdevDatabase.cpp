// SPDX-License-Identifier: Apache-2.0
#include "model/linux/UdevDatabase.h"

#include "model/linux/HostObject.h"

#include <fcntl.h>
#include <filesystem>

namespace {
constexpr qsizetype largestRecord = 65536;

RegistryValue texts(const QByteArrayList &list, TextPool &pool)
{
    RegistryValue::Elements elements;
    for (const QByteArray &text : list)
        elements.push_back(RegistryValue::string(pool.text(text).toOwner()));
    return RegistryValue::array(std::move(elements));
}
} // namespace

UdevDatabase::UdevDatabase(const QByteArray &sysfsFolder)
{
    std::error_code error;
    std::filesystem::path folder =
        std::filesystem::absolute(sysfsFolder.toStdString(), error).lexically_normal();
    if (!folder.has_filename())
        folder = folder.parent_path(); // the path ended with a slash
    const std::filesystem::path run = folder.parent_path() / "run/udev";
    directory_ = FileDescriptor(open((run / "data").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    isDaemonRunning_ = access((run / "control").c_str(), F_OK) == 0;
}

QByteArray UdevDatabase::recordName(const HostObject &device)
{
    const RegistryValue &uevent = device.member(u"uevent");
    const RegistryValue &major = uevent.member(u"MAJOR");
    if (!major.isNone()) {
        const QByteArray kind = device.subsystem == "block" ? "b" : "c";
        return kind + QByteArray::number(major.numberBits()) + ':' +
               QByteArray::number(uevent.member(u"MINOR").numberBits());
    }
    const RegistryValue &index = uevent.member(u"IFINDEX");
    if (!index.isNone())
        return 'n' + QByteArray::number(index.numberBits());
    if (device.subsystem.isEmpty())
        return {};
    return '+' + device.subsystem + ':' + device.kernelName;
}

bool UdevDatabase::expectsRecord(const HostObject &device)
{
    const RegistryValue &uevent = device.member(u"uevent");
    return !uevent.member(u"MAJOR").isNone() || !uevent.member(u"IFINDEX").isNone();
}

RegistryValue UdevDatabase::record(const HostObject &device)
{
    const QByteArray name = recordName(device);
    if (!exists() || name.isEmpty() || name.contains('/'))
        return {};
    const QByteArray bytes = readSmallFile(directory_.get(), name.constData(), largestRecord);
    QByteArrayList links;
    QByteArrayList tags;
    RegistryValue::Members properties;
    QSet<QByteArray> known;
    for (const QByteArray &line : bytes.split('\n')) {
        const QByteArray value = line.mid(2);
        if (line.startsWith("S:"))
            links.append(value);
        else if (line.startsWith("G:") || line.startsWith("Q:"))
            tags.append(value);
        const qsizetype sign = value.indexOf('=');
        if (!line.startsWith("E:") || sign <= 0 || known.contains(value.left(sign)))
            continue;
        known.insert(value.left(sign));
        const QByteArray key = value.left(sign);
        properties.push_back({pool_.text(key), parseScalar(key, value.mid(sign + 1), pool_)});
    }
    if (links.isEmpty() && tags.isEmpty() && properties.empty())
        return {};
    std::sort(properties.begin(), properties.end(),
              [](const auto &a, const auto &b) { return a.key.toOwner() < b.key.toOwner(); });
    tags = QSet<QByteArray>(tags.begin(), tags.end()).values();
    std::sort(tags.begin(), tags.end());
    return RegistryValue::dictionary(
        {{pool_.text("links"), texts(links, pool_)},
         {pool_.text("properties"), RegistryValue::dictionary(std::move(properties))},
         {pool_.text("tags"), texts(tags, pool_)}});
}
