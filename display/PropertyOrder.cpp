// SPDX-License-Identifier: Apache-2.0
#include "display/PropertyOrder.h"

#include "platform/text/NaturalOrder.h"

namespace {
// By name and by value, texts are in natural order; all else is compared as nodes are.
int compareNames(const TavRegistryProperty &a, const TavRegistryProperty &b)
{
    return a.hasName() && b.hasName() ? compareNaturally(a.nameView(), b.nameView())
                                      : a.compareByName(b);
}

int compareValues(const TavRegistryProperty &a, const TavRegistryProperty &b)
{
    const bool areTexts = !a.stringView().isNull() && !b.stringView().isNull();
    return areTexts ? compareNaturally(a.stringView(), b.stringView()) : a.compareByValue(b);
}

int compare(PropertyOrder::By by, const TavRegistryProperty &a, const TavRegistryProperty &b)
{
    switch (by) {
    case PropertyOrder::By::Name:
        return compareNames(a, b);
    case PropertyOrder::By::Type:
        return a.compareByType(b);
    default:
        return compareValues(a, b);
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
