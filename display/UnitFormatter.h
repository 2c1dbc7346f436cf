#pragma once

#include "display/PropertyFormatOptions.h"

#include <QByteArrayView>
#include <QString>
#include <optional>

// Writes bytes as integers of one width, base and byte order.
class UnitFormatter
{
public:
    enum class Kind { Number, Data }; // data is padded to the full width

    // The machine's byte order, as the data store records it, is what native means for data.
    UnitFormatter(Kind kind, const PropertyFormatOptions &options, qint32 machineByteOrder);

    // The printf format of one unit; none for base 2 and for impossible options.
    static const char *formatText(Kind kind, const PropertyFormatOptions &options);

    // Takes one unit off the bytes and appends its text, by the format unless the base is 2.
    // False, with nothing changed, if fewer bytes than a unit remain or there is nothing to write
    // them by.
    bool appendUnit(QString &text, QByteArrayView &bytes, const char *format) const;

private:
    std::optional<quint64> read(QByteArrayView unit) const;
    void appendBinary(QString &text, std::optional<quint64> value) const;

    Kind kind_;
    PropertyFormatOptions options_;
    qint32 machineByteOrder_;
};
