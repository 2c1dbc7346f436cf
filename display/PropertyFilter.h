// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/ShownValueSearch.h"

#include <QSet>

// Chooses the properties to show for a text: those that have it in their key or in the value that
// is shown, those that contain one of them, and all below a key that has it. The numbers of values
// in a collection do not count.
class PropertyFilter
{
public:
    explicit PropertyFilter(const QString &text); // not empty

    void read(const TavRegistryProperty &root); // forgets what was read before
    bool shows(const TavRegistryProperty &node) const { return shown_.contains(&node); }
    bool showsAllBelow(const TavRegistryProperty &node) const { return byKey_.contains(&node); }
    bool showsAny() const { return !shown_.isEmpty(); }

private:
    bool matchesKey(const TavRegistryProperty &node) const;
    bool matchesValue(const TavRegistryProperty &node, qint32 byteOrder) const;
    void showWithAncestors(const TavRegistryProperty &node);

    QStringMatcher matcher_;
    ShownValueSearch values_;
    QSet<const TavRegistryProperty *> shown_;
    QSet<const TavRegistryProperty *> byKey_;
};
