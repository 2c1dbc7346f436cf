#pragma once

#include "model/linux/DeviceEvent.h"

// Where the events of a host come from.
class DeviceEventSource
{
public:
    enum class Reception : quint8 {
        Event,
        Nothing, // for now
        Loss,    // of any number of events
    };

    virtual ~DeviceEventSource() = default;
    virtual int descriptor() const = 0;                // readable when something waits
    virtual Reception receive(DeviceEvent &event) = 0; // does not wait
};
