// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryState.h"
#include "model/RegistryValue.h"

class TavRegistryProperty;

// What a snapshot holds of a property node. Children are given by their places in a list of nodes.
struct PropertyRecord
{
    std::size_t firstChild = 0;
    quint32 childCount = 0;
    RegistryState state = RegistryStateUnchanged;
    RegistryValue::Type type = RegistryValue::Type::None;
    bool hasName = false;
    bool isCollection = false;
    CompactString name = {};
    RegistryValue value = {};
};

// The nodes of a tree as TavRegistryProperty::restore takes them.
std::vector<PropertyRecord> propertyRecords(const TavRegistryProperty &root);
