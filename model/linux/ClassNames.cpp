// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ClassNames.h"

#include "model/linux/PciClass.h"

namespace {
using Kind = RawObject::Kind;

const QString entryClass = QStringLiteral("DxRegistryEntry");
const QString serviceClass = QStringLiteral("DxService");

// What distinguishes a device within its subsystem; empty: nothing.
QString deviceWord(const HostObject &device)
{
    if (device.subsystem == "pci")
        return PciClass(device).baseClass();
    const RegistryValue &type = device.member(u"uevent").member(u"DEVTYPE");
    const QString subsystem = ClassNames::camelCased(device.subsystem);
    QString word = ClassNames::camelCased(type.toString().toUtf8());
    if (word.startsWith(subsystem))
        word.remove(0, subsystem.size());
    return word;
}

QStringList deviceChain(const HostObject &device)
{
    QStringList chain;
    if (!device.subsystem.isEmpty()) {
        const QString stem = QStringLiteral("Dx") + ClassNames::camelCased(device.subsystem);
        const QString word = deviceWord(device);
        if (!word.isEmpty() && word != QLatin1String("Device"))
            chain += stem + word;
        chain += stem + QStringLiteral("Device");
        chain += device.isOnBus ? QStringLiteral("DxBusDevice") : QStringLiteral("DxClassDevice");
    }
    return chain + QStringList{QStringLiteral("DxDevice"), serviceClass, entryClass};
}

QStringList bindingChain(const HostObject &binding)
{
    return {QStringLiteral("Dx") + ClassNames::camelCased(binding.kernelName) +
                QStringLiteral("Driver"),
            QStringLiteral("Dx") + ClassNames::camelCased(binding.subsystem) +
                QStringLiteral("Binding"),
            QStringLiteral("DxBinding"), serviceClass, entryClass};
}

QStringList chainFor(const HostObject &object)
{
    switch (object.kind) {
    case Kind::Device:
        return deviceChain(object);
    case Kind::Binding:
        return bindingChain(object);
    case Kind::Container:
        return {QStringLiteral("DxContainer"), serviceClass, entryClass};
    case Kind::Host:
        return {QStringLiteral("DxHost"), serviceClass, entryClass};
    case Kind::Root:
        return {QStringLiteral("DxRoot"), entryClass};
    case Kind::Bus:
        return {QStringLiteral("DxBus"), entryClass};
    case Kind::Class:
        return {QStringLiteral("DxClass"), entryClass};
    case Kind::Driver:
        return {QStringLiteral("DxDriver"), entryClass};
    case Kind::Module:
        return {QStringLiteral("DxModule"), entryClass};
    case Kind::FirmwareNode:
        return {QStringLiteral("DxFirmwareNode"), entryClass};
    }
    return {entryClass};
}
} // namespace

const QByteArray ClassNames::kernelBundle = "__kernel__";

bool ClassNames::hasType(const HostObject &object)
{
    if (object.kind != Kind::Device || object.subsystem.isEmpty())
        return false;
    const QString word = deviceWord(object);
    return !word.isEmpty() && word != QLatin1String("Device");
}

QString ClassNames::nameFor(const HostObject &object)
{
    return derive(chainFor(object), object.module.isNull() ? kernelBundle : object.module);
}

QString ClassNames::derive(const QStringList &chain, const QByteArray &module)
{
    // A subsystem or driver with the name of a built-in class would close a cycle.
    QStringList fromTop(chain.rbegin(), chain.rend());
    fromTop.removeDuplicates();
    const QString last = fromTop.takeLast();
    QString name;
    for (const QString &above : fromTop)
        name = define(above, name, {});
    return define(last, name, module);
}

// Returns the name, or a variant if the name already means another module or superclass, as when a
// bus and a class have the same name. A null module accepts the existing meaning.
QString ClassNames::define(QString name, QString superclass, const QByteArray &module)
{
    for (;;) {
        const auto known = classes_.constFind(name);
        if (known == classes_.constEnd()) {
            classes_.insert(name, {superclass, module.isNull() ? kernelBundle : module});
            return name;
        }
        if (known->superclass != superclass) {
            name += superclass.mid(2);
        } else if (!module.isNull() && known->module != module) {
            superclass = name; // keeps the plain name in the chain
            name += camelCased(module);
        } else {
            return name;
        }
    }
}

QString ClassNames::superclass(const QString &className) const
{
    return classes_.value(className).superclass;
}

QString ClassNames::bundle(const QString &className) const
{
    const auto known = classes_.constFind(className);
    return known != classes_.constEnd() ? QString::fromUtf8(known->module) : QString();
}

bool ClassNames::isKindOf(const QString &className, const QString &ancestor) const
{
    for (QString name = className; !name.isNull(); name = superclass(name)) {
        if (name == ancestor)
            return true;
    }
    return false;
}

QString ClassNames::camelCased(const QByteArray &kernelWord)
{
    QString word;
    bool startsPart = true;
    for (const QChar c : QString::fromUtf8(kernelWord)) {
        if (!c.isLetterOrNumber()) {
            startsPart = true;
            continue;
        }
        word += startsPart ? c.toUpper() : c;
        startsPart = false;
    }
    return word;
}
