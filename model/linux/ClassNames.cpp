#include "model/linux/ClassNames.h"

#include "model/linux/PciClass.h"

namespace {
using Kind = SweepObject::Kind;

const QString entryClass = QStringLiteral("DxRegistryEntry");
const QString serviceClass = QStringLiteral("DxService");

// What tells a device from others of its subsystem; empty when nothing does.
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

QString ClassNames::nameFor(const HostObject &object)
{
    return derive(chainFor(object), object.module.isNull() ? kernelBundle : object.module);
}

QString ClassNames::derive(const QStringList &chain, const QByteArray &module)
{
    // A subsystem or driver named like one of our own classes would close a circle.
    QStringList distinct = chain;
    distinct.removeDuplicates();
    defineChain(distinct, 1);
    QString name = distinct.constFirst();
    for (int attempt = 1;; ++attempt) {
        const auto known = classes_.constFind(name);
        if (known == classes_.constEnd()) {
            // The plain name stays in the chain of one that had to be told apart from it.
            const QString superclass = attempt == 1 ? distinct.value(1) : distinct.constFirst();
            classes_.insert(name, {superclass, module});
            return name;
        }
        if (known->module == module)
            return name;
        name = distinct.constFirst() + camelCased(module);
        if (attempt > 1)
            name += QString::number(attempt);
    }
}

void ClassNames::defineChain(const QStringList &chain, qsizetype from)
{
    for (qsizetype i = from; i < chain.size(); ++i) {
        if (classes_.contains(chain[i]))
            break; // and so is all above it
        classes_.insert(chain[i], {chain.value(i + 1), kernelBundle});
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
