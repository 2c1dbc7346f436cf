// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"
#include "platform/archive/ArchiveValue.h"

// Converts registry values for the archive. Property nodes hold scalars only, since collections
// become nodes; lists are accepted all the same.
ArchiveValue archiveValue(const RegistryValue &value);
RegistryValue registryValue(ArchiveValue value); // none unless it is a registry value
