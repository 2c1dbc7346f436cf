// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/DeviceEvent.h"

// Receives the events of a host.
class DeviceEventSource
{
public:
    enum class Reception : quint8 {
        Event,
        Nothing, // for now
        Loss,    // any number of events were lost
    };

    virtual ~DeviceEventSource() = default;
    virtual int descriptor() const = 0;                // readable when an event waits
    virtual Reception receive(DeviceEvent &event) = 0; // does not wait
};
