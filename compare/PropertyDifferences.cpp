// SPDX-License-Identifier: Apache-2.0
#include "compare/PropertyDifferences.h"

#include "compare/VolatileAttributes.h"

#include <QSet>

namespace {
// The keys from the root to a node; elements of a collection count as the collection.
QString keyPath(const TavRegistryProperty &node)
{
    QStringList keys;
    for (const TavRegistryProperty *at = &node; at->parent(); at = at->parent()) {
        if (at->hasName())
            keys.prepend(at->name());
    }
    return keys.join(u'/');
}

QString withoutIndexes(const QString &path)
{
    static const QRegularExpression index(QStringLiteral("\\[\\d+\\]"));
    return path.contains(u'[') ? QString(path).remove(index) : path;
}

bool isGone(const TavRegistryProperty &node)
{
    return node.registryState() == RegistryStateTerminated;
}

// A link with the name of the device that it leads to: the difference is that of the device.
bool isMember(const QString &path, const TavRegistryProperty *node)
{
    const QStringView link = node ? node->stringView() : QStringView();
    return link.startsWith(u"devices/") && link.size() > path.size() && link.endsWith(path) &&
           link[link.size() - path.size() - 1] == u'/';
}

// Finds the counterparts of a collection's children in the older collection.
class OlderChildren
{
public:
    OlderChildren(const TavRegistryProperty &parent, const TavRegistryProperty *older)
        : type_(parent.valueType())
        , older_(older && older->valueType() == type_ ? older : nullptr)
    {
        if (older_ && type_ == RegistryValue::Type::Dictionary) {
            for (const TavRegistryProperty *child : older_->children())
                byName_.insert(child->nameView(), child);
        }
    }

    const TavRegistryProperty *of(const TavRegistryProperty &child, std::size_t index) const
    {
        if (isGone(child))
            return &child;
        if (!older_ || child.registryState() == RegistryStateNew)
            return nullptr;
        if (type_ == RegistryValue::Type::Dictionary)
            return byName_.value(child.nameView());
        // A member of a set is there or not.
        return type_ == RegistryValue::Type::Array
                   ? older_->childAtIndex(static_cast<qsizetype>(index))
                   : &child;
    }

private:
    RegistryValue::Type type_;
    const TavRegistryProperty *older_;
    QHash<QStringView, const TavRegistryProperty *> byName_;
};
} // namespace

PropertyDifferences::PropertyDifferences(PropertyRef before, PropertyRef after, Rules rules)
    : older_(std::move(before))
    , tree_(std::move(after))
    , rules_(std::move(rules))
{
    if (older_ && tree_)
        tree_->noteChangesFromProperty(*older_);
    else if (tree_)
        tree_->setRegistryStateRecursive(RegistryStateNew);
    else if (older_) {
        tree_ = older_->copy();
        tree_->setRegistryStateRecursive(RegistryStateTerminated);
    }
}

const TavRegistryProperty *PropertyDifferences::olderOf(const TavRegistryProperty &node) const
{
    if (isGone(node))
        return &node;
    const TavRegistryProperty *const parent = node.parent();
    if (!parent)
        return older_.get();
    std::size_t index = 0;
    if (parent->valueType() == RegistryValue::Type::Array) {
        const auto siblings = parent->children();
        index = static_cast<std::size_t>(std::find(siblings.begin(), siblings.end(), &node) -
                                         siblings.begin());
    }
    return OlderChildren(*parent, olderOf(*parent)).of(node, index);
}

void PropertyDifferences::addChildren(const Place &place, Places &pending)
{
    const auto children = place.node->children();
    const OlderChildren older(*place.node, place.older);
    const bool isArray = place.node->valueType() == RegistryValue::Type::Array;
    // Last first: the pending places are a stack.
    for (std::size_t i = children.size(); i-- > 0;) {
        const TavRegistryProperty &child = *children[i];
        if (child.registryState() == RegistryStateUnchanged)
            continue;
        QString path = place.path;
        if (!child.hasName())
            path += isArray ? QStringLiteral("[%1]").arg(i) : QStringLiteral("[]");
        else if (path.isEmpty())
            path = child.name();
        else
            path += u'/' + child.name();
        pending.push_back({&child, older.of(child, i), path});
    }
}

PropertyDifferences::Change PropertyDifferences::changeAt(const Place &place) const
{
    const TavRegistryProperty *const after = isGone(*place.node) ? nullptr : place.node;
    return {place.path, place.older, after, isVolatile(place.path, place.older, after),
            isIgnored(place.path)};
}

std::vector<PropertyDifferences::Change> PropertyDifferences::changes() const
{
    std::vector<Change> found;
    if (!tree_ || !older_)
        return found;
    Places pending{{tree_.get(), older_.get(), {}}};
    while (!pending.empty()) {
        const Place place = std::move(pending.back());
        pending.pop_back();
        const bool isCompared = place.node->isCollection() && place.older &&
                                place.older->valueType() == place.node->valueType() &&
                                !isGone(*place.node);
        if (isCompared)
            addChildren(place, pending);
        else
            found.push_back(changeAt(place));
    }
    return found;
}

bool PropertyDifferences::isVolatile(const TavRegistryProperty &node) const
{
    return isVolatile(keyPath(node), olderOf(node), isGone(node) ? nullptr : &node);
}

bool PropertyDifferences::isVolatile(const QString &path, const TavRegistryProperty *before,
                                     const TavRegistryProperty *after) const
{
    if (!rules_.volatileAttributes)
        return false;
    const QString keys = withoutIndexes(path);
    return rules_.volatileAttributes->contains(rules_.subsystem, keys) ||
           (rules_.isRenumbered && rules_.volatileAttributes->followsFromNumber(keys)) ||
           ((!before || !after) && isMember(path, before ? before : after)) ||
           (before && after && differsByNumbersOnly(*before, *after));
}

bool PropertyDifferences::isIgnored(const QString &path) const
{
    if (rules_.ignoredKeys.isEmpty())
        return false;
    const QString keys = withoutIndexes(path);
    const QStringList parts = keys.split(u'/');
    return rules_.ignoredKeys.contains(keys) ||
           std::any_of(parts.begin(), parts.end(),
                       [this](const QString &key) { return rules_.ignoredKeys.contains(key); });
}

bool PropertyDifferences::differsByNumbersOnly(const TavRegistryProperty &before,
                                               const TavRegistryProperty &after) const
{
    if (rules_.renumbered.empty() || before.stringView().isEmpty() || after.stringView().isEmpty())
        return false;
    QString text = before.stringView().toString();
    for (const auto &[old, current] : rules_.renumbered)
        text.replace(old, current);
    return text == after.stringView();
}
