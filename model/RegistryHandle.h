// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"

#include <utility>

// Holds one handle of a registry object and releases it.
class RegistryHandle
{
public:
    RegistryHandle() = default;

    // Takes ownership of a handle that the service returned.
    static RegistryHandle adopt(RegistryService &service, RegistryObject object)
    {
        RegistryHandle handle;
        handle.service_ = &service;
        handle.object_ = object;
        return handle;
    }
    static RegistryHandle retain(RegistryService &service, RegistryObject object)
    {
        if (object)
            service.retain(object);
        return adopt(service, object);
    }

    RegistryHandle(RegistryHandle &&other) noexcept
        : service_(other.service_)
        , object_(std::exchange(other.object_, 0))
    {}
    RegistryHandle &operator=(RegistryHandle &&other) noexcept
    {
        std::swap(service_, other.service_);
        std::swap(object_, other.object_);
        return *this;
    }
    ~RegistryHandle() { reset(); }

    RegistryObject get() const { return object_; }
    explicit operator bool() const { return object_ != 0; }
    void reset()
    {
        if (object_)
            service_->release(std::exchange(object_, 0));
    }

private:
    RegistryService *service_ = nullptr;
    RegistryObject object_ = 0;
};
