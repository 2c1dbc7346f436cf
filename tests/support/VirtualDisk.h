// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QFile>

// Adds a compressed memory disk through the kernel's control file and removes it afterwards.
class VirtualDisk
{
public:
    static constexpr const char *missing =
        "no virtual disk can be added here (needs root and the zram module)";

    VirtualDisk()
    {
        QFile add(QStringLiteral("/sys/class/zram-control/hot_add"));
        if (add.open(QIODevice::ReadOnly))
            number_ = add.readAll().trimmed();
    }
    ~VirtualDisk() { remove(); }
    VirtualDisk(const VirtualDisk &) = delete;
    VirtualDisk &operator=(const VirtualDisk &) = delete;
    void remove()
    {
        QFile control(QStringLiteral("/sys/class/zram-control/hot_remove"));
        if (exists() && control.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            control.write(number_);
        number_.clear();
    }
    bool exists() const { return !number_.isEmpty(); }
    QByteArray name() const { return "zram" + number_; }

private:
    QByteArray number_;
};
