// SPDX-License-Identifier: Apache-2.0
#include "platform/host/HostInformation.h"

#include <QFile>
#include <QStringList>
#include <QSysInfo>

namespace {
// The value of PRETTY_HOSTNAME= in the machine's information file, unquoted; null without one.
QString prettyHostName()
{
    constexpr qint64 maxSize = 64 * 1024;
    QFile file(QStringLiteral("/etc/machine-info"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray key = "PRETTY_HOSTNAME=";
    for (const QByteArray &line : file.read(maxSize).split('\n')) {
        if (!line.startsWith(key))
            continue;
        QByteArray value = line.mid(key.size()).trimmed();
        if (value.size() >= 2 && (value.front() == '"' || value.front() == '\'') &&
            value.back() == value.front())
            value = value.mid(1, value.size() - 2);
        return value.isEmpty() ? QString() : QString::fromUtf8(value);
    }
    return {};
}

quint32 processorTypeOf(const QString &machineType)
{
    static const QStringList x86{QStringLiteral("i386"), QStringLiteral("i486"),
                                 QStringLiteral("i586"), QStringLiteral("i686")};
    if (x86.contains(machineType))
        return 7;
    return machineType == QLatin1String("x86_64") ? 0x1000007 : 0;
}
} // namespace

HostInformation HostInformation::ofThisMachine()
{
    QString name = prettyHostName();
    if (name.isNull())
        name = QSysInfo::machineHostName();
    HostInformation machine = ofMachine(name, QSysInfo::buildCpuArchitecture());
    machine.byteOrder = QSysInfo::ByteOrder == QSysInfo::LittleEndian ? 1 : 2;
    return machine;
}

HostInformation HostInformation::ofMachine(const QString &computerName, const QString &machineType)
{
    const quint32 processorType = processorTypeOf(machineType);
    return {computerName.isEmpty() ? QString() : computerName, processorType,
            processorType != 0 ? 1 : 0};
}
