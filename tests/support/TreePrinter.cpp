// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TreePrinter.h"

namespace {
QString mark(RegistryState state)
{
    switch (state) {
    case RegistryStateNew:
        return QStringLiteral(" (new)");
    case RegistryStateChanged:
        return QStringLiteral(" (changed)");
    case RegistryStateTerminated:
        return QStringLiteral(" (terminated)");
    default:
        return {};
    }
}

// Depth first, without recursion: trees may be deeper than the stack.
template<class Node, class ChildrenOf, class TextOf>
std::string print(const Node &top, ChildrenOf childrenOf, TextOf textOf)
{
    QString text;
    std::vector<std::pair<const Node *, qsizetype>> pending{{&top, 0}};
    while (!pending.empty()) {
        const auto [node, depth] = pending.back();
        pending.pop_back();
        text += QString(2 * depth, u' ') + textOf(*node) + mark(node->registryState()) + u'\n';
        const auto &children = childrenOf(*node);
        for (auto child = children.rbegin(); child != children.rend(); ++child)
            pending.emplace_back(*child, depth + 1);
    }
    return text.toStdString();
}

QString numberText(const RegistryValue &number)
{
    const QString text = number.isSignedNumber() ? QString::number(number.signedNumber())
                                                 : QString::number(number.numberBits());
    const int width = number.numberWidth();
    return text +
           (width == 1 ? QStringLiteral(" (1 byte)") : QStringLiteral(" (%1 bytes)").arg(width));
}
QString valueText(const TavRegistryProperty &node)
{
    using Type = RegistryValue::Type;
    const RegistryValue value = node.value();
    switch (node.isCollection() ? node.valueType() : value.type()) {
    case Type::Dictionary:
        return QStringLiteral("dictionary");
    case Type::Array:
        return QStringLiteral("array");
    case Type::Set:
        return QStringLiteral("set");
    case Type::String:
        return u'"' + value.toString() + u'"';
    case Type::Number:
        return numberText(value);
    case Type::Boolean:
        return value.toBoolean() ? QStringLiteral("true") : QStringLiteral("false");
    case Type::Data:
        return u'<' + QString::fromLatin1(value.toData().toHex()) + u'>';
    case Type::Date:
        return value.toDate().toString(Qt::ISODateWithMs);
    case Type::Null:
        return QStringLiteral("null");
    case Type::None:
        break;
    }
    return QStringLiteral("collection"); // a copied one, which has lost its type
}
} // namespace

std::string TreePrinter::plane(const TavDataStore &store, const QString &plane)
{
    if (!store.registryRoot())
        return {};
    return print(
        *store.registryRoot(),
        [&](const TavRegistryEntry &node) -> const EntryList::Entries & {
            return node.childrenInPlane(plane);
        },
        [&](const TavRegistryEntry &node) { return node.nameAtLocationInPlane(plane); });
}

std::string TreePrinter::properties(const TavRegistryProperty &top)
{
    return print(
        top, [](const TavRegistryProperty &node) { return node.children(); },
        [](const TavRegistryProperty &node) {
            return node.name().isNull() ? valueText(node)
                                        : node.name() + QLatin1String(": ") + valueText(node);
        });
}
