// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

class SysfsRoot;

// Properties of the root and the host that the tree does not hold.
namespace HostFacts {
// Kernel release, version and boot ID.
RegistryValue::Members ofRunningKernel();
// The operating system's name.
RegistryValue::Members ofRunningSystem();
// The machine's model and compatible list, if the tree has a device tree.
RegistryValue::Members ofDeviceTree(const SysfsRoot &root);
} // namespace HostFacts
