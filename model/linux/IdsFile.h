// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

// The names of vendors, devices and classes in a file such as pci.ids or usb.ids: lines
// "VVVV  vendor", indented below each "DDDD  device", and likewise "C CC  class" and "SS subclass".
// Indexed once.
class IdsFile
{
public:
    static constexpr qsizetype maxSize = 64 << 20; // bytes

    // Without names, and logged, when the file cannot be read or has none.
    static IdsFile read(const QString &file);
    explicit IdsFile(QByteArray text);

    bool isEmpty() const { return names_.empty(); }
    // Null where there is none.
    QString vendor(quint16 vendor) const { return nameOf(key(Kind::Vendor, vendor, 0)); }
    QString device(quint16 vendor, quint16 device) const
    {
        return nameOf(key(Kind::Device, vendor, device));
    }
    QString baseClass(quint8 base) const { return nameOf(key(Kind::BaseClass, base, 0)); }
    QString subclass(quint8 base, quint8 sub) const
    {
        return nameOf(key(Kind::Subclass, base, sub));
    }

private:
    enum class Kind : quint8 { None, Vendor, Device, BaseClass, Subclass };
    struct Name
    {
        quint64 key;
        quint32 start; // in the text
        quint32 size;
    };

    static quint64 key(Kind kind, quint16 top, quint16 below)
    {
        return quint64(kind) << 32 | quint64(top) << 16 | below;
    }
    void addLine(qsizetype start, qsizetype end);
    bool add(Kind kind, qsizetype digits, int width, qsizetype end);
    QString nameOf(quint64 key) const;

    QByteArray text_;
    std::vector<Name> names_; // by key
    Kind section_ = Kind::None;
    quint16 top_ = 0; // of the section
};
