// SPDX-License-Identifier: Apache-2.0
#include "explorer/ExplorerContext.h"

#include "explorer/DateText.h"
#include "explorer/EntryIcons.h"
#include "explorer/IncompleteBar.h"
#include "store/TavDataStore.h"

#include <QApplication>
#include <QStyle>

EntryList::Entries ExplorerContext::filterRegistryEntries(const EntryList::Entries &entries) const
{
    EntryList::Entries kept;
    std::copy_if(entries.begin(), entries.end(), std::back_inserter(kept),
                 [this](const TavRegistryEntry *entry) { return passesFilter(*entry); });
    return kept;
}

QString ExplorerContext::toolTipForRegistryEntry(const TavRegistryEntry &entry) const
{
    QString text = entry.nameAtLocationInPlane(registryPlane());
    const auto append = [&](const QDateTime &date, const QString &format) {
        if (date.isNull())
            return;
        if (!text.isEmpty())
            text += u'\n';
        text += format.arg(DateText::shortDate(date), DateText::mediumTime(date));
    };
    if (const DeviceName *const device = entry.deviceName())
        text += u'\n' + device->description();
    append(entry.dateDiscovered(), tr("Discovered: %1 %2"));
    append(entry.dateLastUpdated(), tr("Updated: %1 %2"));
    append(entry.dateTerminated(), tr("Terminated: %1 %2"));
    const QString warning = warningForEntry(entry);
    return warning.isNull() ? text : text + u'\n' + warning;
}

// The root stands for the whole registry.
QString ExplorerContext::warningForEntry(const TavRegistryEntry &entry) const
{
    return entry.isRegistryRoot() ? IncompleteBar::message(dataStore()->incompleteObjects().size())
                                  : QString();
}

QVariant ExplorerContext::markForEntry(const TavRegistryEntry &entry) const
{
    if (!warningForEntry(entry).isNull())
        return QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
    return showsIcons() ? QVariant(EntryIcons::shared().iconOf(entry)) : QVariant();
}

QVariant ExplorerContext::detailForEntry(const TavRegistryEntry &entry) const
{
    const DeviceName *const device = showsDeviceNames() ? entry.deviceName() : nullptr;
    const QString detail = device ? device->shortTitle() : QString();
    return detail.isNull() ? QVariant() : detail;
}

QString ExplorerContext::accessibleNameForEntry(const TavRegistryEntry &entry,
                                                const QString &name) const
{
    const QString detail = detailForEntry(entry).toString();
    // "name, device"
    const QString text = detail.isNull() ? name : tr("%1, %2").arg(name, detail);
    switch (entry.registryState()) {
    case RegistryStateNew:
        return tr("%1, new").arg(text);
    case RegistryStateTerminated:
        return tr("%1, terminated").arg(text);
    default:
        return text;
    }
}
