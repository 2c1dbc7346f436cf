// SPDX-License-Identifier: Apache-2.0
#include "model/linux/HostFacts.h"

#include "model/linux/SysfsRoot.h"

#include <QFile>
#include <QSysInfo>
#include <sys/utsname.h>

namespace {
RegistryValue::Member member(QLatin1String key, const QString &text)
{
    return {CompactString(QString(key)), RegistryValue::string(text)};
}
} // namespace

RegistryValue::Members HostFacts::ofRunningKernel()
{
    RegistryValue::Members members;
    QFile bootID(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    if (bootID.open(QIODevice::ReadOnly))
        members.push_back(
            member(QLatin1String("DxBootID"), QString::fromLatin1(bootID.readAll().trimmed())));
    utsname system;
    if (uname(&system) == 0) {
        members.push_back(
            member(QLatin1String("DxKernelRelease"), QString::fromUtf8(system.release)));
        members.push_back(
            member(QLatin1String("DxKernelVersion"), QString::fromUtf8(system.version)));
    }
    return members;
}

RegistryValue::Members HostFacts::ofRunningSystem()
{
    return {member(QLatin1String("DxOperatingSystem"), QSysInfo::prettyProductName())};
}

RegistryValue::Members HostFacts::ofDeviceTree(const SysfsRoot &root)
{
    const FileDescriptor base = root.openDirectory("firmware/devicetree/base");
    RegistryValue::Members members;
    const auto strings = [&base](const char *name) {
        constexpr qsizetype limit = 4096;
        RegistryValue::Elements list;
        for (const QByteArray &text : readSmallFile(base.get(), name, limit).split('\0')) {
            if (!text.isEmpty())
                list.push_back(RegistryValue::string(QString::fromUtf8(text)));
        }
        return list;
    };
    if (!base)
        return members;
    if (RegistryValue::Elements compatible = strings("compatible"); !compatible.empty())
        members.push_back({CompactString(QStringLiteral("compatible")),
                           RegistryValue::array(std::move(compatible))});
    if (const RegistryValue::Elements model = strings("model"); !model.empty())
        members.push_back({CompactString(QStringLiteral("model")), model.front()});
    return members;
}
