#include "platform/HostInformation.h"

#include <QFile>
#include <QSysInfo>

namespace {
// The value of PRETTY_HOSTNAME= in the machine's information file, unquoted; null without one.
QString prettyHostName()
{
    constexpr qint64 largestSensible = 64 * 1024;
    QFile file(QStringLiteral("/etc/machine-info"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray key = "PRETTY_HOSTNAME=";
    for (const QByteArray &line : file.read(largestSensible).split('\n')) {
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
} // namespace

QString HostInformation::computerName()
{
    const QString pretty = prettyHostName();
    if (!pretty.isNull())
        return pretty;
    const QString name = QSysInfo::machineHostName();
    return name.isEmpty() ? QString() : name;
}

quint32 HostInformation::processorType()
{
    const QString architecture = QSysInfo::buildCpuArchitecture();
    if (architecture == QLatin1String("i386"))
        return 7;
    if (architecture == QLatin1String("x86_64"))
        return 0x1000007;
    return 0;
}

qint32 HostInformation::byteOrder()
{
    return QSysInfo::ByteOrder == QSysInfo::LittleEndian ? 1 : 2;
}
