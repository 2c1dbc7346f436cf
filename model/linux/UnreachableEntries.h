// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayList>

class RegistryGraph;

// Entries that the root of their plane does not reach, with the plane, such as "DxDriver: bus/pci",
// and objects in no plane. There should be none. Linear in objects and edges.
QByteArrayList unreachableEntries(const RegistryGraph &graph);
