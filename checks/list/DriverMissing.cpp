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
                .subsystems = {QStringLiteral("pci"), QStringLiteral("usb")},
                .title = tr("Device has no driver"),
                .explanation = tr("The kernel found a device of a kind that needs a driver, but no "
                                  "driver serves it."),
                .nextStep = tr("Look for a kernel module for its modalias, install it, and load it "
                               "with modprobe."),
                .reading = {QStringLiteral("Documentation/PCI/pci.rst"),
                            QStringLiteral("Documentation/driver-api/usb/usb.rst")}};
    }

    void look(const CheckedEntry &entry, const Report &report) const override
    {
        if (!entry.driver().isEmpty() || !entry.has(u"modalias"))
            return;
        const QString kind = kindOf(entry);
        if (!kind.isEmpty())
            report({tr("%1, %2").arg(kind, entry.text(u"modalias")), {QStringLiteral("modalias")}});
    }
};
} // namespace

std::unique_ptr<const Check> makeDriverMissing()
{
    return std::make_unique<DriverMissing>();
}
