// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"
#include "display/StyledText.h"

#include <QByteArray>
#include <QCoreApplication>

// The three ways to show a block of bytes.
class DataRendering
{
    Q_DECLARE_TR_FUNCTIONS(DataRendering)
public:
    struct Integers
    {
        StyledText text;
        bool hasLeftoverBytes; // fewer than one unit, at the end
    };
    struct Characters
    {
        StyledText text;
        quint32 count; // 0 if the bytes could not be decoded
    };
    struct Automatic
    {
        StyledText text;
        quint32 strings; // 0 if shown as bytes
    };

    static Integers integers(const QByteArray &bytes, const PropertyFormatOptions &options,
                             qint32 machineByteOrder);
    static Characters characters(const QByteArray &bytes, qint64 encoding);
    // As NUL-terminated strings if the bytes look like text, else in hexadecimal.
    static bool looksLikeText(QByteArrayView bytes);
    // The bytes by the automatic rule if they do not: ASCII in lower case.
    static QByteArray hexadecimal(QByteArrayView bytes, qint32 machineByteOrder);
    static Automatic automatic(const QByteArray &bytes, qint32 machineByteOrder);
};
