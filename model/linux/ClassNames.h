// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/HostObject.h"

#include <QHash>
#include <QStringList>

// The classes of the host's objects, and the module of each. A name keeps its meaning as long as
// the service lives, because bundles are looked up by class name.
class ClassNames
{
public:
    static const QByteArray kernelBundle; // for what no module supplies

    // Whether the object is of a type of its own within its subsystem, such as a USB interface.
    static bool hasType(const HostObject &object);
    // Names the object's class from its kind, subsystem, driver and module.
    QString nameFor(const HostObject &object);
    QString superclass(const QString &className) const; // null at the top or for an unknown name
    QString bundle(const QString &className) const;     // null for an unknown name
    bool isKindOf(const QString &className, const QString &ancestor) const;

    // "usb_interface" as "UsbInterface".
    static QString camelCased(const QByteArray &kernelWord);

private:
    struct Class
    {
        QString superclass;
        QByteArray module;
    };

    QString derive(const QStringList &chain, const QByteArray &module);
    QString define(QString name, QString superclass, const QByteArray &module);

    QHash<QString, Class> classes_;
};
