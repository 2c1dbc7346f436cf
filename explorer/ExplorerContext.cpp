// SPDX-License-Identifier: Apache-2.0
#include "explorer/ExplorerContext.h"

#include "compare/ComparisonStore.h"
#include "display/comparison/DifferenceWords.h"
#include "display/views/DifferenceIcons.h"
#include "display/views/FindingIcons.h"
#include "explorer/DateText.h"
#include "explorer/EntryIcons.h"
#include "explorer/EntryTextStyle.h"
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
    if (const QString difference = differenceText(entry); !difference.isNull())
        text += u'\n' + difference;
    append(entry.dateDiscovered(), tr("Discovered: %1 %2"));
    append(entry.dateLastUpdated(), tr("Updated: %1 %2"));
    append(entry.dateTerminated(), tr("Terminated: %1 %2"));
    if (const QString findings = findingsText(entry); !findings.isNull())
        text += u'\n' + findings;
    if (const auto seconds = secondsSinceChange(entry))
        text += u'\n' + tr("Changed %1 s ago").arg(*seconds);
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
    const ComparisonStore *const compared = comparison();
    const DifferenceKind kind =
        compared ? compared->differenceOf(entry).kind : DifferenceKind::Same;
    QIcon icon = kind != DifferenceKind::Same ? DifferenceIcons::icon(kind)
                 : showsIcons()               ? EntryIcons::shared().iconOf(entry)
                                              : QIcon();
    const auto [own, below] = findingSigns(entry);
    if (own && (!below || *own >= *below))
        icon = FindingIcons::badged(icon, *own, FindingIcons::Kind::Own);
    else if (below)
        icon = FindingIcons::badged(icon, *below, FindingIcons::Kind::Below);
    return icon.isNull() ? QVariant() : QVariant(icon);
}

QString ExplorerContext::findingsText(const TavRegistryEntry &entry) const
{
    const auto [own, below] = findingSigns(entry);
    QStringList lines = own ? findingTitles(entry) : QStringList();
    if (below)
        lines.append(*below == Severity::Error     ? tr("An error below")
                     : *below == Severity::Warning ? tr("A warning below")
                                                   : tr("A note below"));
    return lines.isEmpty() ? QString() : lines.join(u'\n');
}

QStringList ExplorerContext::detailsOf(const TavRegistryEntry &entry) const
{
    const DeviceName *const device = showsDeviceNames() ? entry.deviceName() : nullptr;
    QStringList details;
    if (const QString below = differencesBelowText(entry); !below.isNull())
        details.append(below);
    if (device)
        details.append(device->shortTitle());
    return details;
}

QVariant ExplorerContext::detailForEntry(const TavRegistryEntry &entry) const
{
    QStringList details = detailsOf(entry);
    if (secondsSinceChange(entry))
        details.prepend(QStringLiteral("●"));
    return details.isEmpty() ? QVariant() : details.join(QLatin1String(" · "));
}

QVariant ExplorerContext::colorForEntry(const TavRegistryEntry &entry,
                                        const EntryTextAttributes &attributes) const
{
    const bool isPlain = attributes.color == EntryTextAttributes::Color::Text;
    const DifferenceKind kind =
        isPlain && comparison() ? comparison()->differenceOf(entry).kind : DifferenceKind::Same;
    return kind == DifferenceKind::Same ? EntryTextStyle::color(attributes)
                                        : QVariant(DifferenceIcons::color(kind));
}

QString ExplorerContext::differenceText(const TavRegistryEntry &entry) const
{
    if (!comparison())
        return {};
    const EntryDifference &difference = comparison()->differenceOf(entry);
    if (difference.kind == DifferenceKind::Same)
        return {};
    QStringList facts;
    for (const auto &change : comparison()->comparison().factChanges(difference))
        facts.append(
            tr("%1: %2 → %3")
                .arg(DifferenceWords::factTitle(change.fact), change.before, change.after));
    facts.prepend(DifferenceWords::word(difference.kind));
    return facts.join(u'\n');
}

QString ExplorerContext::differencesBelowText(const TavRegistryEntry &entry) const
{
    const quint64 below = comparison() ? comparison()->differencesBelow(entry, registryPlane()) : 0;
    return below == 0   ? QString()
           : below == 1 ? tr("1 difference")
                        : tr("%1 differences").arg(below);
}

QString ExplorerContext::accessibleNameForEntry(const TavRegistryEntry &entry,
                                                const QString &name) const
{
    const QString detail = detailsOf(entry).join(QLatin1String(" · "));
    // "name, device"
    QString text = detail.isEmpty() ? name : tr("%1, %2").arg(name, detail);
    if (secondsSinceChange(entry))
        text = tr("%1, changed a short time ago").arg(text);
    if (QString findings = findingsText(entry); !findings.isNull())
        text = tr("%1, %2").arg(text, findings.replace(u'\n', QStringLiteral(", ")));
    if (const ComparisonStore *const compared = comparison()) {
        const DifferenceKind kind = compared->differenceOf(entry).kind;
        return kind == DifferenceKind::Same ? text
                                            : tr("%1, %2").arg(text, DifferenceWords::word(kind));
    }
    switch (entry.registryState()) {
    case RegistryStateNew:
        return tr("%1, new").arg(text);
    case RegistryStateTerminated:
        return tr("%1, terminated").arg(text);
    default:
        return text;
    }
}
