#pragma once

#include "model/linux/RawObject.h"

// What a PCI device's class code says it is.
class PciClass
{
public:
    // From the attribute "class", else from the uevent; 0 when neither is there.
    explicit PciClass(const RawObject &device);

    QByteArray word() const;   // "ethernet", or "pci" when the code says nothing
    QString baseClass() const; // "Network"; empty when the code says nothing

private:
    quint32 code_ = 0; // base class, subclass and interface, a byte each
};
