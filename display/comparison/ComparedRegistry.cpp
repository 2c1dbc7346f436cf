// SPDX-License-Identifier: Apache-2.0
#include "display/comparison/ComparedRegistry.h"

#include "store/TavDataStore.h"
#include "store/filter/PropertyLookup.h"

namespace {
QString fact(const RegistryValue &table, QStringView key)
{
    const QString text = table.member(key).toString();
    return text.isEmpty() ? QString() : text;
}
} // namespace

ComparedRegistry::ComparedRegistry(const TavDataStore &store, QString source)
    : source_(std::move(source))
    , host_(store.hostName())
    , architecture_(store.archName())
    , dateRead_(store.lastUpdateDate())
{
    if (const TavRegistryEntry *const root = store.registryRoot()) {
        RegistryValue made;
        const RegistryValue &table = PropertyLookup::tableOf(*root, made);
        kernelRelease_ = fact(table, u"DxKernelRelease");
        operatingSystem_ = fact(table, u"DxOperatingSystem");
    }
}

std::span<const ComparedRegistry::Fact> ComparedRegistry::facts()
{
    using enum Fact;
    static constexpr Fact facts[] = {Source,          Host, Architecture, KernelRelease,
                                     OperatingSystem, Read};
    return facts;
}

QString ComparedRegistry::title(Fact fact)
{
    switch (fact) {
    case Fact::Source:
        return tr("Source");
    case Fact::Host:
        return tr("Machine");
    case Fact::Architecture:
        return tr("Architecture");
    case Fact::KernelRelease:
        return tr("Kernel");
    case Fact::OperatingSystem:
        return tr("System");
    case Fact::Read:
        return tr("Read");
    }
    return {};
}

QString ComparedRegistry::text(Fact fact) const
{
    switch (fact) {
    case Fact::Source:
        return source_;
    case Fact::Host:
        return host_;
    case Fact::Architecture:
        return architecture_;
    case Fact::KernelRelease:
        return kernelRelease_;
    case Fact::OperatingSystem:
        return operatingSystem_;
    case Fact::Read:
        return dateRead_.isNull() ? QString() : dateRead_.toLocalTime().toString(Qt::ISODate);
    }
    return {};
}

QString ComparedRegistry::line() const
{
    QStringList parts{source_};
    for (const Fact fact : facts()) {
        const QString its = text(fact);
        if (fact != Fact::Source && !its.isEmpty())
            parts.append(fact == Fact::KernelRelease ? tr("kernel %1").arg(its) : its);
    }
    return parts.join(QLatin1String(", "));
}

QStringList ComparedRegistry::notes(const ComparedRegistry &before, const ComparedRegistry &after)
{
    QStringList notes;
    const auto compare = [&](Fact fact, const QString &text) {
        const QString older = before.text(fact);
        const QString newer = after.text(fact);
        if (older != newer && !older.isEmpty() && !newer.isEmpty())
            notes.append(text.arg(older, newer));
    };
    compare(Fact::Host, tr("Different machines: %1 and %2"));
    compare(Fact::Architecture, tr("Different architectures: %1 and %2"));
    compare(Fact::KernelRelease, tr("Different kernels: %1 and %2"));
    compare(Fact::OperatingSystem, tr("Different systems: %1 and %2"));
    return notes;
}
