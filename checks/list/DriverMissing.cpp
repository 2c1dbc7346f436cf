// SPDX-License-Identifier: Apache-2.0
#include "checks/Check.h"

namespace {
// Of devices that do nothing without a driver; empty: another.
QString kindOf(const CheckedEntry &entry)
{
    static const QHash<qint64, const char *> pciKinds{
        {0x01, QT_TRANSLATE_NOOP("DriverMissing", "storage")},
        {0x02, QT_TRANSLATE_NOOP("DriverMissing", "network")},
        {0x04, QT_TRANSLATE_NOOP("DriverMissing", "multimedia")},
        {0x0d, QT_TRANSLATE_NOOP("DriverMissing", "wireless")}};
    static const QHash<qint64, const char *> usbKinds{
        {0x01, QT_TRANSLATE_NOOP("DriverMissing", "audio")},
        {0x03, QT_TRANSLATE_NOOP("DriverMissing", "input")},
        {0x08, QT_TRANSLATE_NOOP("DriverMissing", "storage")},
        {0x0e, QT_TRANSLATE_NOOP("DriverMissing", "video")}};
    constexpr int toBaseClass = 16;
    const bool isUsb = entry.subsystem() == QLatin1String("usb");
    const QString usbClass = entry.value(u"bInterfaceClass").toString();
    const qint64 code = isUsb ? (usbClass.isEmpty() ? entry.number(u"bInterfaceClass").value_or(0)
                                                    : usbClass.toInt(nullptr, 16))
                              : entry.number(u"class").value_or(0) >> toBaseClass;
    const char *const kind = (isUsb ? usbKinds : pciKinds).value(code);
    return kind ? QCoreApplication::translate("DriverMissing", kind) : QString();
}

class DriverMissing : public Check
{
    Q_DECLARE_TR_FUNCTIONS(DriverMissing)
public:
    CheckDescription description() const override
    {
        return {.id = QStringLiteral("driver-missing"),
                .severity = Severity::Warning,
                .subsystems = {QStringLiteral("pci"), QStringLiteral("usb"),
                               QStringLiteral("virtio"), QStringLiteral("hid"),
                               QStringLiteral("serio")},
                .title = tr("Device has no driver"),
                .explanation = tr("The kernel found a device of a kind that needs a driver, or one "
                                  "that it has a module for, but no driver serves it."),
                .nextStep = tr("Look for a kernel module for its modalias, install it, and load it "
                               "with modprobe."),
                .reading = {QStringLiteral("Documentation/PCI/pci.rst"),
                            QStringLiteral("Documentation/driver-api/usb/usb.rst")},
                .looksAround = true};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (!entry.driver().isEmpty() || !entry.has(u"modalias"))
            return;
        const QString kind = kindOf(entry);
        const ModuleCatalog *const catalog = entry.registry().modules();
        const Modules modules = catalog ? catalog->modulesFor(entry.text(u"modalias")) : Modules();
        const auto found = [&](auto isWanted) {
            const auto module = std::find_if(modules.begin(), modules.end(), isWanted);
            return module == modules.end() ? nullptr : &*module;
        };
        const auto isThere = [&](const Module &module) { return isLoaded(entry, module); };
        const auto isAllowed = [](const Module &module) { return !module.isBlocked; };
        if (modules.empty())
            reportMissing(entry, kind, catalog != nullptr, report);
        else if (const Module *const loaded = found(isThere))
            reportRefused(kind, *loaded, report);
        else if (const Module *const unloaded = found(isAllowed))
            reportNotLoaded(kind, *unloaded, report);
        else
            reportBlocked(modules.front(), report);
    }

private:
    using Module = ModuleCatalog::Module;
    using Modules = std::vector<Module>;

    // Not every module that is built in has an object.
    static bool isLoaded(const CheckedEntry &entry, const Module &module)
    {
        return module.isBuiltIn ||
               entry.registry().atLink(QStringLiteral("module/") + module.name) != nullptr;
    }

    static QStringList basis() { return {QStringLiteral("modalias")}; }

    static void reportMissing(const CheckedEntry &entry, const QString &kind, bool isKnown,
                              const Report &report)
    {
        if (kind.isEmpty())
            return;
        const QString modalias = entry.text(u"modalias");
        report({isKnown ? tr("%1; this kernel has no module for it: %2").arg(kind, modalias)
                        : tr("%1, %2").arg(kind, modalias),
                basis()});
    }

    static void reportNotLoaded(const QString &kind, const Module &module, const Report &report)
    {
        report({tr("the module %1 exists and is not loaded").arg(module.name), basis(),
                kind.isEmpty() ? Severity::Note : Severity::Warning,
                tr("Load the module with “modprobe %1”, and read the messages of the kernel.")
                    .arg(module.name)});
    }

    static void reportBlocked(const Module &module, const Report &report)
    {
        report({tr("the module %1 exists and is kept from loading").arg(module.name), basis(),
                Severity::Note,
                tr("If that is not intended, look for “blacklist %1” in /etc/modprobe.d.")
                    .arg(module.name)});
    }

    // Drivers decline devices that only look like theirs, so this says something only of kinds that
    // need one.
    static void reportRefused(const QString &kind, const Module &module, const Report &report)
    {
        if (kind.isEmpty())
            return;
        report({module.isBuiltIn
                    ? tr("%1; its driver %2 is built into the kernel and did not take it")
                          .arg(kind, module.name)
                    : tr("%1; its module %2 is loaded and did not take it").arg(kind, module.name),
                basis(), Severity::Warning,
                tr("Read the messages of the kernel for why the driver refused the device, and see "
                   "whether it was unbound on purpose.")});
    }
};
} // namespace

std::unique_ptr<const Check> makeDriverMissing()
{
    return std::make_unique<DriverMissing>();
}
