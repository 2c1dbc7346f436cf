#include "model/linux/HostFacts.h"

#include <QFile>
#include <QSysInfo>
#include <sys/utsname.h>

namespace
{
RegistryValue::Member member(QLatin1String key, const QString &text)
{
    return {CompactString(QString(key)), RegistryValue::string(text)};
}
}

RegistryValue::Members HostFacts::ofRunningKernel()
{
    RegistryValue::Members members;
    QFile bootID(QStringLiteral("/proc/sys/kernel/random/boot_id"));
    if (bootID.open(QIODevice::ReadOnly))
        members.push_back(member(QLatin1String("DxBootID"),
                                 QString::fromLatin1(bootID.readAll().trimmed())));
    utsname system;
    if (uname(&system) == 0) {
        members.push_back(member(QLatin1String("DxKernelRelease"),
                                 QString::fromUtf8(system.release)));
        members.push_back(member(QLatin1String("DxKernelVersion"),
                                 QString::fromUtf8(system.version)));
    }
    return members;
}

RegistryValue::Members HostFacts::ofRunningSystem()
{
    return {member(QLatin1String("DxOperatingSystem"), QSysInfo::prettyProductName())};
}
