#pragma once

#include "model/RegistryValue.h"

class SysfsRoot;

// What the program's root and the host tell of themselves, beside what the tree holds.
namespace HostFacts {
// Kernel release and version, and the boot's ID: of the running kernel.
RegistryValue::Members ofRunningKernel();
// The operating system's name: of the running system.
RegistryValue::Members ofRunningSystem();
// The machine's model and what it is compatible with, where the tree has a device tree.
RegistryValue::Members ofDeviceTree(const SysfsRoot &root);
} // namespace HostFacts
