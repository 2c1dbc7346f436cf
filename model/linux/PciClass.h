// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/RawObject.h"

// The meaning of a PCI device's class code.
class PciClass
{
public:
    // From the attribute "class" or the uevent; 0 if there is neither.
    explicit PciClass(const RawObject &device);

    QByteArray word() const;   // "ethernet"; "pci" for an unknown code
    QString baseClass() const; // "Network"; empty for an unknown code

private:
    quint32 code_ = 0; // base class, subclass and interface, a byte each
};
