// SPDX-License-Identifier: Apache-2.0
#include "model/PropertyRecord.h"

#include "model/TavRegistryProperty.h"

std::vector<PropertyRecord> propertyRecords(const TavRegistryProperty &root)
{
    std::vector<const TavRegistryProperty *> nodes{&root};
    std::vector<PropertyRecord> records;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const TavRegistryProperty &node = *nodes[i];
        const std::vector<TavRegistryProperty *> children = node.children();
        records.push_back({.firstChild = nodes.size(),
                           .childCount = static_cast<quint32>(children.size()),
                           .state = node.registryState(),
                           .type = node.valueType(),
                           .hasName = node.hasName(),
                           .isCollection = node.isCollection(),
                           .name = CompactString(node.name()),
                           .value = node.value()});
        nodes.insert(nodes.end(), children.begin(), children.end());
    }
    return records;
}
