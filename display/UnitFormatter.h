// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/PropertyFormatOptions.h"

#include <QByteArrayView>
#include <QString>
#include <optional>

// Formats bytes as integers of one width, base and byte order.
class UnitFormatter
{
public:
    enum class Kind { Number, Data }; // data is padded to the full width

    // For data, native is the byte order that the data store records.
    UnitFormatter(Kind kind, const PropertyFormatOptions &options, qint32 machineByteOrder);

    // The printf format of one unit; empty for base 2 and for invalid options.
    static const char *formatText(Kind kind, const PropertyFormatOptions &options);

    // Removes one unit from the bytes and appends its text. False, with nothing changed, if fewer
    // bytes remain or there is no format for them.
    bool appendUnit(QString &text, QByteArrayView &bytes, const char *format) const;

private:
    std::optional<quint64> read(QByteArrayView unit) const;
    void appendBinary(QString &text, std::optional<quint64> value) const;

    Kind kind_;
    PropertyFormatOptions options_;
    qint32 machineByteOrder_;
};
