// SPDX-License-Identifier: Apache-2.0
#pragma once

class TavDataStore;

// The bytes of all texts and data in a store's entries; shared ones count once.
double bytesOfTexts(const TavDataStore &store);
