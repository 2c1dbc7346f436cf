// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QProcess>

// Adds a pair of linked network interfaces and removes it afterwards.
class VirtualInterface
{
public:
    static constexpr const char *missing =
        "no network interface can be added here (needs root and iproute2)";

    VirtualInterface()
    {
        static int count = 0;
        // Limited by the kernel.
        name_ = QStringLiteral("v%1x%2").arg(QCoreApplication::applicationPid()).arg(++count);
        exists_ = ip({QStringLiteral("add"), name_, QStringLiteral("type"), QStringLiteral("veth"),
                      QStringLiteral("peer"), QStringLiteral("name"), name_ + u'p'});
    }
    ~VirtualInterface()
    {
        if (exists_)
            ip({QStringLiteral("delete"), name_});
    }
    VirtualInterface(const VirtualInterface &) = delete;
    VirtualInterface &operator=(const VirtualInterface &) = delete;
    bool exists() const { return exists_; }
    QByteArray name() const { return name_.toLatin1(); }

private:
    static bool ip(const QStringList &arguments)
    {
        QProcess ip;
        ip.start(QStringLiteral("ip"), QStringList(QStringLiteral("link")) + arguments);
        return ip.waitForFinished() && ip.exitStatus() == QProcess::NormalExit &&
               ip.exitCode() == 0;
    }

    QString name_;
    bool exists_ = false;
};
