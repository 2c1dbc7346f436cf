// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QCoreApplication>
#include <QString>
#include <array>

class RegistryValue;

// Renders a number value as text.
class NumberRendering
{
    Q_DECLARE_TR_FUNCTIONS(NumberRendering)
public:
    // Any options except the unit that stands for the default.
    static QString text(const RegistryValue &number, const PropertyFormatOptions &options,
                        qint32 machineByteOrder);

    // The text by the automatic rule, in the buffer: ASCII in lower case. Empty for a number of no
    // width.
    using Buffer = std::array<char, 24>;
    static QByteArrayView automatic(const RegistryValue &number, Buffer &buffer);
};
