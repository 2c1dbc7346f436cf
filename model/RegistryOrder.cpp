// SPDX-License-Identifier: Apache-2.0
#include "model/RegistryOrder.h"

namespace {
const QString servicePlane = QStringLiteral("DxService");

int compare(const QString &a, const QString &b, bool aFirst, bool bFirst)
{
    if (a == b)
        return 0;
    if (aFirst != bFirst)
        return aFirst ? -1 : 1;
    const int order = a.compare(b, Qt::CaseInsensitive);
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}
} // namespace

int compareRegistryPlaneForUI(const QString &a, const QString &b)
{
    return compare(a, b, a == servicePlane, b == servicePlane);
}

int compareRegistryPathForUI(const QString &a, const QString &b)
{
    return compare(a, b, a.startsWith(servicePlane), b.startsWith(servicePlane));
}
