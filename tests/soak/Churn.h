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
    static bool isPossible();

    explicit Churn(std::mt19937 &random)
        : random_(random)
    {}

    void step();
    void end();
    quint64 changes() const { return changes_; }

private:
    template<class Device>
    void change(std::vector<std::unique_ptr<Device>> &devices, std::size_t most);

    std::mt19937 &random_;
    std::vector<std::unique_ptr<VirtualDisk>> disks_;
    std::vector<std::unique_ptr<VirtualInterface>> interfaces_;
    quint64 changes_ = 0;
};
