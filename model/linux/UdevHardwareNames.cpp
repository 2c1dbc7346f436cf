// SPDX-License-Identifier: Apache-2.0
#include "model/linux/UdevHardwareNames.h"

#include "model/ModelLogging.h"

#include <cerrno>
#include <clocale>
#include <cstring>
#include <libudev.h>

namespace {
// The texts that stand for a device without its class, and for any device of its class.
struct ModaliasParts
{
    explicit ModaliasParts(const QString &modalias)
    {
        // Behind a vendor and a device of fixed width, and for PCI those of the subsystem.
        const bool isPci = modalias.startsWith(QLatin1String("pci:v"));
        const bool isUsb = modalias.startsWith(QLatin1String("usb:v"));
        const QString none = isPci   ? QStringLiteral("pci:v00000000d00000000sv00000000sd00000000")
                             : isUsb ? QStringLiteral("usb:v0000p0000")
                                     : QString();
        device = none.isNull() ? modalias : modalias.left(none.size());
        anyOfClass = none + modalias.mid(none.size());
    }

    QString device;
    QString anyOfClass;
};

// While it exists, this thread compares texts byte by byte. In a locale of UTF-8, the C library
// would convert each pattern of the database to wide characters first.
class PlainTexts
{
public:
    PlainTexts()
        : before_(uselocale(plain()))
    {}
    ~PlainTexts() { uselocale(before_); }
    PlainTexts(const PlainTexts &) = delete;
    PlainTexts &operator=(const PlainTexts &) = delete;

private:
    static locale_t plain()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
        return locale; // if there is none, nothing changes
    }

    locale_t before_;
};

// What a look-up answers.
class Answer
{
public:
    Answer(udev_hwdb &database, const QString &modalias)
        : first_(udev_hwdb_get_properties_list_entry(&database, modalias.toUtf8().constData(), 0))
    {}

    QString operator[](const char *key) const
    {
        udev_list_entry *const entry = udev_list_entry_get_by_name(first_, key);
        return entry ? QString::fromUtf8(udev_list_entry_get_value(entry)) : QString();
    }
    // The first one that is known.
    QString firstOf(std::initializer_list<const char *> keys) const
    {
        for (const char *key : keys) {
            if (const QString value = (*this)[key]; !value.isEmpty())
                return value;
        }
        return {};
    }

private:
    udev_list_entry *first_;
};
} // namespace

void UdevHardwareNames::Release::operator()(udev *context) const
{
    udev_unref(context);
}

void UdevHardwareNames::Release::operator()(udev_hwdb *database) const
{
    udev_hwdb_unref(database);
}

UdevHardwareNames::UdevHardwareNames()
    : context_(udev_new())
{
    errno = 0;
    if (context_)
        database_.reset(udev_hwdb_new(context_.get()));
    if (!database_ && errno != ENOENT) // a small system has none
        qCWarning(modelLog, "The hardware database cannot be read: %s", std::strerror(errno));
}

// A look-up compares with every pattern for a class, of which there are many, so that the class is
// looked up by itself, once.
DeviceName UdevHardwareNames::nameOf(const QString &modalias)
{
    if (!database_)
        return {};
    const PlainTexts plain;
    const Answer answer(*database_, ModaliasParts(modalias).device);
    return {answer["ID_MODEL_FROM_DATABASE"], answer["ID_VENDOR_FROM_DATABASE"], classOf(modalias)};
}

QString UdevHardwareNames::classOf(const QString &modalias)
{
    const QString part = ModaliasParts(modalias).anyOfClass;
    const auto known = classes_.constFind(part);
    if (known != classes_.constEnd())
        return *known;
    const Answer answer(*database_, part);
    return *classes_.insert(
        part, answer.firstOf({"ID_PCI_SUBCLASS_FROM_DATABASE", "ID_PCI_CLASS_FROM_DATABASE",
                              "ID_USB_SUBCLASS_FROM_DATABASE", "ID_USB_CLASS_FROM_DATABASE",
                              "ID_SDIO_CLASS_FROM_DATABASE"}));
}
