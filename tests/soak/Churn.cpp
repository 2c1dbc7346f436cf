#include "Churn.h"

bool Churn::isPossible()
{
    return VirtualDisk().exists() || VirtualInterface().exists();
}

void Churn::step()
{
    if (random_() % 4)
        change(disks_, 24);
    else
        change(interfaces_, 6);
}

void Churn::end()
{
    disks_.clear();
    interfaces_.clear();
}

template<class Device>
void Churn::change(std::vector<std::unique_ptr<Device>> &devices, std::size_t most)
{
    const bool adds = devices.empty() || (devices.size() < most && random_() % 2);
    if (adds) {
        auto device = std::make_unique<Device>();
        if (!device->exists())
            return;
        devices.push_back(std::move(device));
    } else {
        devices.erase(devices.begin() + static_cast<std::ptrdiff_t>(random_() % devices.size()));
    }
    ++changes_;
}
