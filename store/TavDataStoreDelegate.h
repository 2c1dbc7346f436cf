// SPDX-License-Identifier: Apache-2.0
#pragma once

class TavDataStoreDelegate
{
public:
    virtual ~TavDataStoreDelegate() = default;
    // The registry, or a part of it, cannot be reached; the store continues with what it has.
    virtual void fatalDxRegistryError() = 0;
};
