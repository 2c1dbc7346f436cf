// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <optional>

// The numbers in the modalias of a PCI or USB device.
struct ModaliasNumbers
{
    enum class Bus : quint8 { Pci, Usb };

    // None for another bus, or for a text of another form.
    static std::optional<ModaliasNumbers> of(QStringView modalias);

    Bus bus;
    quint16 vendor;
    quint16 device;
    quint8 baseClass;
    quint8 subclass;
};
