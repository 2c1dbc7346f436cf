// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/VirtualDisk.h"
#include "tests/support/VirtualInterface.h"

#include <QFile>
#include <memory>
#include <random>
#include <vector>

// Adds and removes virtual devices of this machine at random. Removes all when destroyed.
class Churn
{
public:
    static bool isPossible() { return VirtualDisk().exists() || VirtualInterface().exists(); }

    explicit Churn(std::mt19937 &random)
        : random_(random)
    {}

    void step()
    {
        if (random_() % 4)
            change(disks_, 24);
        else
            change(interfaces_, 6);
    }
    // A flood of events of one device that nothing else uses.
    void flood()
    {
        if (disks_.empty() && interfaces_.empty())
            return;
        const bool isDisk = interfaces_.empty() || (!disks_.empty() && random_() % 2);
        const QByteArray device = isDisk ? "block/" + pick(disks_) : "net/" + pick(interfaces_);
        QFile uevent(QStringLiteral("/sys/class/%1/uevent").arg(QString::fromLatin1(device)));
        if (!uevent.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return;
        for (auto count = random_() % maxEvents; count > 0; --count)
            events_ += uevent.write("change") > 0;
    }
    void end()
    {
        disks_.clear();
        interfaces_.clear();
    }
    quint64 changes() const { return changes_; }
    quint64 events() const { return events_; } // of floods

private:
    static constexpr quint32 maxEvents = 20'000;

    template<class Device>
    QByteArray pick(const std::vector<std::unique_ptr<Device>> &devices)
    {
        return devices[random_() % devices.size()]->name();
    }
    template<class Device>
    void change(std::vector<std::unique_ptr<Device>> &devices, std::size_t most)
    {
        const bool adds = devices.empty() || (devices.size() < most && random_() % 2);
        if (adds) {
            auto device = std::make_unique<Device>();
            if (!device->exists())
                return;
            devices.push_back(std::move(device));
        } else {
            devices.erase(devices.begin() +
                          static_cast<std::ptrdiff_t>(random_() % devices.size()));
        }
        ++changes_;
    }

    std::mt19937 &random_;
    std::vector<std::unique_ptr<VirtualDisk>> disks_;
    std::vector<std::unique_ptr<VirtualInterface>> interfaces_;
    quint64 changes_ = 0;
    quint64 events_ = 0;
};
