// SPDX-License-Identifier: Apache-2.0
// XML property lists, as in snapshots of version 1.

#include "Fuzzing.h"
#include "model/TavRegistryProperty.h"
#include "store/PropertyListReader.h"

int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size)
{
    const RegistryValue value = PropertyListReader::read(fuzzedBytes(data, size));
    if (value.isNone())
        return 0;
    const PropertyRef tree = TavRegistryProperty::create(TavRegistryProperty::staticPropertyClass(),
                                                         nullptr, {}, nullptr, {}, 0, value);
    tree->clearIsNew();
    require(tree->registryState() == RegistryStateUnchanged);
    return 0;
}
