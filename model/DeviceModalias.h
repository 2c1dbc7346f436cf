// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"

class TavRegistryProperty;

// The text by which hardware databases know a device.
namespace DeviceModalias {
// From the properties of an entry; null for one that is no such device. Any thread.
QString of(const RegistryValue &properties);
// Those properties of a tree that decide, for an entry that has only the tree.
RegistryValue propertiesOf(const TavRegistryProperty &tree);
} // namespace DeviceModalias
