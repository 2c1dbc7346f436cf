// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/TavRegistryProperty.h"

class VolatileAttributes;

// The differences between the property trees of one entry at two moments.
class PropertyDifferences
{
public:
    // What decides whether a difference counts.
    struct Rules
    {
        const VolatileAttributes *volatileAttributes = nullptr;
        QString subsystem = {};         // or the class of what has none, such as a module
        QSet<QString> ignoredKeys = {}; // by name or by path
        // Names that changed only because devices were found in another order: old and new.
        std::vector<std::pair<QString, QString>> renumbered = {};
        bool isRenumbered = false; // the entry itself, or one above it
    };
    struct Change
    {
        QString path;                      // keys joined with '/', "key[0]" for elements
        const TavRegistryProperty *before; // null: new
        const TavRegistryProperty *after;  // null: gone
        bool isVolatile;
        bool isIgnored;
    };

    PropertyDifferences() = default;
    // Both trees must be nobody else's; null: the entry has no properties.
    PropertyDifferences(PropertyRef before, PropertyRef after, Rules rules);
    // Of an entry that was added or removed: nothing is compared.
    explicit PropertyDifferences(PropertyRef only)
        : tree_(std::move(only))
    {}

    // The newer tree with its nodes noted as new, changed or terminated (gone); that of the only
    // entry for one that was added or removed. Null: no properties.
    const PropertyRef &tree() const { return tree_; }
    // The counterpart of a node of the tree: its old value. Null for new ones.
    const TavRegistryProperty *olderOf(const TavRegistryProperty &node) const;
    bool isVolatile(const TavRegistryProperty &node) const;
    // New, gone and changed values; a new or gone collection is one change.
    std::vector<Change> changes() const;

private:
    struct Place
    {
        const TavRegistryProperty *node;
        const TavRegistryProperty *older;
        QString path;
    };
    using Places = std::vector<Place>;

    static void addChildren(const Place &place, Places &pending);
    Change changeAt(const Place &place) const;
    bool isVolatile(const QString &path, const TavRegistryProperty *before,
                    const TavRegistryProperty *after) const;
    bool isIgnored(const QString &path) const;
    bool differsByNumbersOnly(const TavRegistryProperty &before,
                              const TavRegistryProperty &after) const;

    PropertyRef older_;
    PropertyRef tree_;
    Rules rules_;
};
