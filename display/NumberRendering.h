#pragma once

#include "display/PropertyFormatOptions.h"

#include <QCoreApplication>
#include <QString>

class RegistryValue;

// The text of a number value.
class NumberRendering
{
    Q_DECLARE_TR_FUNCTIONS(NumberRendering)
public:
    // Options of any unit but the one to use the default.
    static QString text(const RegistryValue &number, const PropertyFormatOptions &options,
                        qint32 machineByteOrder);
};
