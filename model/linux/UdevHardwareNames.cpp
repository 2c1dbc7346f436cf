// SPDX-License-Identifier: Apache-2.0
#include "model/linux/UdevHardwareNames.h"

#include "model/ModelLogging.h"

#include <cerrno>
#include <cstring>
#include <libudev.h>

namespace {
// What a lookup answers, by key; the database's order is not that of the keys.
class Answer
{
public:
    explicit Answer(udev_list_entry *first)
        : first_(first)
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

DeviceName UdevHardwareNames::nameOf(const QString &modalias)
{
    if (!database_)
        return {};
    udev_list_entry *const found =
        udev_hwdb_get_properties_list_entry(database_.get(), modalias.toUtf8().constData(), 0);
    if (!found)
        return {};
    const Answer answer(found);
    return {answer["ID_MODEL_FROM_DATABASE"], answer["ID_VENDOR_FROM_DATABASE"],
            answer.firstOf({"ID_PCI_SUBCLASS_FROM_DATABASE", "ID_PCI_CLASS_FROM_DATABASE",
                            "ID_USB_SUBCLASS_FROM_DATABASE", "ID_USB_CLASS_FROM_DATABASE",
                            "ID_SDIO_CLASS_FROM_DATABASE"})};
}
