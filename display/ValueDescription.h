#pragma once

#include "display/PropertyFormatOptions.h"

#include <QCoreApplication>
#include <QString>

// Says in words how a number or data value was interpreted, for its tooltip.
class ValueDescription
{
    Q_DECLARE_TR_FUNCTIONS(ValueDescription)
public:
    struct Data
    {
        quint64 byteCount;
        // What the rendering by the same options found.
        quint32 strings;
        quint32 characters;
        bool hasLeftoverBytes;
    };

    // Options of any unit but the one to use the default.
    static QString ofData(const Data &data, const PropertyFormatOptions &options);
    static QString ofNumber(quint64 byteCount, const PropertyFormatOptions &options);
};
