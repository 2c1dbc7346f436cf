// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QCoreApplication>
#include <QString>

class RegistryValue;

// Renders a number value as text.
class NumberRendering
{
    Q_DECLARE_TR_FUNCTIONS(NumberRendering)
public:
    // Any options except the unit that stands for the default.
    static QString text(const RegistryValue &number, const PropertyFormatOptions &options,
                        qint32 machineByteOrder);
};
