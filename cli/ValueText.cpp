// SPDX-License-Identifier: Apache-2.0
#include "cli/ValueText.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/export/PropertyLines.h"
#include "model/TavRegistryEntry.h"

namespace {
using Type = RegistryValue::Type;

// Those nearest to the top, like PropertyLookup. The contents of sets are no properties.
std::vector<TavPropertyOutlineItem *> nodesWithKeys(const TavRegistryProperty &root,
                                                    const QStringList &keys)
{
    std::vector<TavPropertyOutlineItem *> found;
    std::vector<const TavRegistryProperty *> level{&root};
    while (!level.empty() && found.empty()) {
        std::vector<const TavRegistryProperty *> next;
        for (const TavRegistryProperty *const collection : level) {
            if (collection->valueType() == Type::Set)
                continue;
            for (TavRegistryProperty *const child : collection->children()) {
                if (child->isCollection())
                    next.push_back(child);
                if (!child->hasName() || child->name() != keys.constFirst())
                    continue;
                TavRegistryProperty *node = child;
                for (qsizetype i = 1; node && i < keys.size(); ++i)
                    node = node->childWithName(keys[i]);
                if (node)
                    found.push_back(static_cast<TavPropertyOutlineItem *>(node));
            }
        }
        level = std::move(next);
    }
    return found;
}

void addShownLines(TavPropertyOutlineItem &node, QStringList &lines)
{
    if (!node.isCollection()) {
        lines.append(node.displayValue().text());
        return;
    }
    std::vector<QString> names; // on the way to the line
    PropertyLines::forEach(node, [&](const PropertyLines::Line &line) {
        names.resize(line.level);
        QString prefix;
        for (const QString &name : names)
            prefix += name.isNull() ? QString() : name + u'/';
        const QString name = line.property.hasName() ? line.property.name() : QString();
        names.push_back(name);
        if (!line.property.isCollection())
            lines.append(prefix + (name.isNull() ? QString() : name + QStringLiteral(" = ")) +
                         line.property.displayValue().text());
    });
}
} // namespace

QStringList ValueText::shownLines(const TavRegistryEntry &entry, const QStringList &keys)
{
    QStringList lines;
    const PropertyRef tree = entry.copyOfProperties(TavPropertyOutlineItem::staticPropertyClass());
    if (!tree || keys.isEmpty())
        return lines;
    for (TavPropertyOutlineItem *const node : nodesWithKeys(*tree, keys))
        addShownLines(*node, lines);
    return lines;
}
