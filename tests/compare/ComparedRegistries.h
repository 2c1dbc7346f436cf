// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/SnapshotComparison.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

// A registry that is described by text and captured once.
class DescribedRegistry
{
public:
    using Properties = std::initializer_list<std::pair<const char *, RegistryValue>>;

    explicit DescribedRegistry(const char *servicePlane) { plane("DxService", servicePlane); }

    DescribedRegistry &plane(const QByteArray &name, const char *tree)
    {
        tree_.plane(name, tree);
        return *this;
    }
    DescribedRegistry &with(const char *label, const RegistryValue &properties)
    {
        service_.setProperties(tree_[label], properties);
        return *this;
    }
    DescribedRegistry &inSubsystem(const char *label, const char *subsystem)
    {
        return with(label, values::dictionary({{"subsystem", values::text(subsystem)}}));
    }
    const TavDataStore &store()
    {
        if (!store_)
            store_ = TavDataStore::captureOnce(service_);
        return *store_;
    }

private:
    FakeRegistryService service_;
    TreeBuilder tree_{service_};
    std::unique_ptr<TavDataStore> store_;
};

// One line for each difference: a sign, the path, the facts and properties that differ.
inline QStringList differences(const SnapshotComparison &comparison)
{
    static constexpr char signs[] = "=*>~+-";
    QStringList lines;
    for (const EntryDifference &difference : comparison.differences()) {
        if (difference.kind == DifferenceKind::Same)
            continue;
        const auto paths = difference.entry().allRegistryPaths();
        QString line = QString(QLatin1Char(signs[static_cast<int>(difference.kind)])) + u' ' +
                       paths.value(0).section(u':', 1);
        for (const auto &change : comparison.factChanges(difference))
            line += QStringLiteral(" %1→%2").arg(change.before, change.after);
        const auto properties =
            comparison.propertyDifferences(difference, TavRegistryProperty::staticPropertyClass());
        for (const auto &change : properties.changes()) {
            if (!change.isVolatile || comparison.options().showsVolatile)
                line += u' ' + change.path +
                        (!change.before  ? QLatin1String("+")
                         : !change.after ? QLatin1String("-")
                                         : QLatin1String("*"));
        }
        lines.append(line.remove(QLatin1String("/Host")));
    }
    return lines;
}

inline QStringList differences(DescribedRegistry &before, DescribedRegistry &after,
                               SnapshotComparison::Options options = {})
{
    return differences(SnapshotComparison(before.store(), after.store(), std::move(options), {}));
}
