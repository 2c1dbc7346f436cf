// SPDX-License-Identifier: Apache-2.0
#pragma once

class QString;

// The device nodes that a machine has in /dev. Any thread.
class DeviceNodes
{
public:
    virtual ~DeviceNodes() = default;
    virtual bool has(const QString &name) const = 0; // such as "sda" or "input/event0"
};
