// SPDX-License-Identifier: Apache-2.0
#include "explorer/ExplorerContext.h"

#include "explorer/DateText.h"
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
    return warningForEntry(entry).isNull()
               ? QVariant()
               : QApplication::style()->standardIcon(QStyle::SP_MessageBoxWarning);
}

QString ExplorerContext::accessibleNameForEntry(const TavRegistryEntry &entry, const QString &name)
{
    switch (entry.registryState()) {
    case RegistryStateNew:
        return tr("%1, new").arg(name);
    case RegistryStateTerminated:
        return tr("%1, terminated").arg(name);
    default:
        return name;
    }
}
