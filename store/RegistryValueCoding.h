#pragma once

#include "model/RegistryValue.h"
#include "platform/archive/ArchiveValue.h"

// Values of the registry as an archive holds them. The values of property nodes are scalars, since
// collections have become nodes; a list is taken all the same.
ArchiveValue archiveValue(const RegistryValue &value);
RegistryValue registryValue(ArchiveValue value); // none for what is no registry value
