// SPDX-License-Identifier: Apache-2.0
#include "display/ValueDescription.h"

#include "platform/text/TextEncodings.h"

namespace {
QString automaticData(const ValueDescription::Data &data)
{
    switch (data.strings) {
    case 0:
        return ValueDescription::tr(
                   "%1 bytes autoformatted as hexadecimal bytes in host byte order")
            .arg(data.byteCount);
    case 1:
        return ValueDescription::tr("%1 bytes interpreted as a string in KelRoman encoding")
            .arg(data.byteCount);
    default:
        return ValueDescription::tr("%1 bytes interpreted as %2 strings in KelRoman encoding")
            .arg(data.byteCount)
            .arg(data.strings);
    }
}

QString encodingName(qint64 encoding)
{
    const bool isNumber = encoding >= 0 && encoding < TextEncodings::none;
    return isNumber ? TextEncodings::displayName(static_cast<quint32>(encoding)) : QString();
}

QString byteOrderWord(qint64 byteOrder)
{
    switch (byteOrder) {
    case PropertyFormatOptions::NativeOrder:
        return ValueDescription::tr("native-endian");
    case PropertyFormatOptions::BigEndian:
        return ValueDescription::tr("big-endian");
    case PropertyFormatOptions::LittleEndian:
        return ValueDescription::tr("little-endian");
    default:
        return {};
    }
}

QString baseWords(const PropertyFormatOptions &options)
{
    switch (options.base) {
    case 2:
        return ValueDescription::tr("binary");
    case 8:
        return ValueDescription::tr("octal");
    case 10:
        return (options.signedness == 1 ? ValueDescription::tr("signed")
                                        : ValueDescription::tr("unsigned")) +
               u' ' + ValueDescription::tr("decimal");
    case 16:
        return ValueDescription::tr("hexadecimal");
    default:
        return {};
    }
}

QString integerWords(const PropertyFormatOptions &options)
{
    return byteOrderWord(options.byteOrder) + u' ' + baseWords(options);
}
} // namespace

QString ValueDescription::ofData(const Data &data, const PropertyFormatOptions &options)
{
    if (options.unit == PropertyFormatOptions::automatic)
        return automaticData(data);
    QString text = tr("%1 bytes interpreted as").arg(data.byteCount) + u' ';
    if (options.unit == PropertyFormatOptions::characters)
        return text + tr("%1 %2 characters")
                          .arg(QString::number(data.characters), encodingName(options.encoding));
    if (options.isInteger())
        text += tr("%1-byte").arg(options.unit);
    text += u' ' + integerWords(options);
    if (data.hasLeftoverBytes)
        text += u' ' + tr("(fragmentary bytes at end shown as \"…\")");
    return text;
}

QString ValueDescription::ofNumber(quint64 byteCount, const PropertyFormatOptions &options)
{
    if (options.unit == PropertyFormatOptions::automatic)
        return tr("%1-byte number interpreted in native byte order").arg(byteCount);
    return tr("%1-byte number as").arg(byteCount) + u' ' + integerWords(options);
}
