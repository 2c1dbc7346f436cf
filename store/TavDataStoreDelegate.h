#pragma once

class TavDataStoreDelegate
{
public:
    virtual ~TavDataStoreDelegate() = default;
    // The registry cannot be reached, in whole or in part; the store goes on with what it has.
    virtual void fatalDxRegistryError() = 0;
};
