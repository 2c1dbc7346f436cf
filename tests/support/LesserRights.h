// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <future>
#include <linux/capability.h>
#include <sys/syscall.h>
#include <unistd.h>

// Calls the function in a thread that may not read files or folders whose mode forbids it, not even
// as root. Neither may threads that it starts.
template<class Function>
auto withLesserRights(Function function)
{
    const auto call = [&function] {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct rights[2] = {};
        syscall(SYS_capget, &header, rights);
        rights[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &header, rights);
        return function();
    };
    return std::async(std::launch::async, call).get();
}
