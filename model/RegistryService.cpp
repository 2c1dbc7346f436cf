// SPDX-License-Identifier: Apache-2.0
#include "model/RegistryService.h"

RegistryService::~RegistryService() = default;
