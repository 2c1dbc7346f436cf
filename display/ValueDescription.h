// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QCoreApplication>
#include <QString>

// Describes how a number or data value was interpreted, for its tool tip.
class ValueDescription
{
    Q_DECLARE_TR_FUNCTIONS(ValueDescription)
public:
    struct Data
    {
        quint64 byteCount;
        // Results of the rendering with the same options.
        quint32 strings;
        quint32 characters;
        bool hasLeftoverBytes;
    };

    // Any options except the unit that stands for the default.
    static QString ofData(const Data &data, const PropertyFormatOptions &options);
    static QString ofNumber(quint64 byteCount, const PropertyFormatOptions &options);
};
