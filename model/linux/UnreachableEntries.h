#pragma once

#include <QByteArrayList>

class RegistryGraph;

// The entries that nobody comes to, with their planes, such as "DxDriver: bus/pci": those that the
// root of their plane does not reach, and objects that are in no plane. There should be none.
// Linear in objects and edges.
QByteArrayList unreachableEntries(const RegistryGraph &graph);
