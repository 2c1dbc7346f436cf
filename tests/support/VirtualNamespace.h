// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>
#include <QProcess>

// Adds a network namespace, to move interfaces to, and removes it afterwards.
class VirtualNamespace
{
public:
    static constexpr const char *missing =
        "no network namespace can be added here (needs root and iproute2)";

    VirtualNamespace()
        : exists_(run("ip netns add %1"))
    {}
    ~VirtualNamespace()
    {
        if (exists_)
            run("ip netns delete %1");
    }
    VirtualNamespace(const VirtualNamespace &) = delete;
    VirtualNamespace &operator=(const VirtualNamespace &) = delete;

    bool exists() const { return exists_; }
    bool take(const QByteArray &interface) const
    {
        return run("ip link set " + interface + " netns %1");
    }
    bool giveBack(const QByteArray &interface) const
    {
        return run("ip netns exec %1 ip link set " + interface + " netns " +
                   QByteArray::number(QCoreApplication::applicationPid()));
    }

private:
    bool run(const QByteArray &command) const
    {
        QStringList words = QString::fromLatin1(command).arg(name_).split(u' ');
        QProcess process;
        process.start(words.takeFirst(), words);
        return process.waitForFinished() && process.exitStatus() == QProcess::NormalExit &&
               process.exitCode() == 0;
    }

    QString name_ = QStringLiteral("vandrel%1").arg(QCoreApplication::applicationPid());
    bool exists_ = false;
};
