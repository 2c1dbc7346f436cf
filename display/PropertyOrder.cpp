// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyOrder.h"

namespace {
int compare(PropertyOrder::By by, const TavRegistryProperty &a, const TavRegistryProperty &b)
{
    switch (by) {
    case PropertyOrder::By::Name:
        return a.compareByName(b);
    case PropertyOrder::By::Type:
        return a.compareByType(b);
    default:
        return a.compareByValue(b);
    }
}
} // namespace

// Deliberate: two properties of different types may each sort first, and a dictionary even before
// itself. Sorting needs one answer, so the types decide; otherwise they are equal.
bool PropertyOrder::precedes(By by, const TavRegistryProperty &a, const TavRegistryProperty &b)
{
    if (compare(by, a, b) >= 0)
        return false;
    if (compare(by, b, a) >= 0)
        return true;
    return a.compareByType(b) < 0 && b.compareByType(a) >= 0;
}
