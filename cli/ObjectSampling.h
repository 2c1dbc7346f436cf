// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/ObjectSample.h"

class RegistryService;

// Reads attributes of an object as they are now, and waits for them.
ObjectSample sampleNow(RegistryService &service, const ObjectSample::Request &request);
