#pragma once

#include "tests/support/VirtualDisk.h"
#include "tests/support/VirtualInterface.h"

#include <memory>
#include <random>
#include <vector>

// Virtual devices of this machine that come and go at random. All go with it.
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
    void end()
    {
        disks_.clear();
        interfaces_.clear();
    }
    quint64 changes() const { return changes_; }

private:
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
};
