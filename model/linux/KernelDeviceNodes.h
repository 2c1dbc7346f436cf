// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/DeviceNodes.h"

// The nodes in /dev where the kernel makes them itself: all devices have theirs. Where others fill
// the folder, as in containers, much is left out on purpose.
class KernelDeviceNodes : public DeviceNodes
{
public:
    static bool areMadeByKernel();
    bool has(const QString &name) const override;
};
