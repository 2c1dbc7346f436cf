// SPDX-License-Identifier: Apache-2.0
#include "tests/support/TreeBuilder.h"

#include "tests/support/TreeText.h"

namespace {
const QStringList rootClasses{QStringLiteral("DxRoot"), QStringLiteral("DxRegistryEntry")};
const QStringList deviceClasses{QStringLiteral("DxDevice"), QStringLiteral("DxService"),
                                QStringLiteral("DxRegistryEntry")};

// Cuts the text at the mark and returns the rest.
QByteArray cutAfter(QByteArray &text, const char *mark)
{
    const qsizetype at = text.indexOf(mark);
    if (at < 0)
        return {};
    const QByteArray after = text.mid(at + QByteArrayView(mark).size());
    text.truncate(at);
    return after;
}
} // namespace

TreeBuilder &TreeBuilder::plane(const QByteArray &plane, const char *tree)
{
    std::vector<Node> ancestors;
    for (const QByteArray &line : QByteArray::fromStdString(dedented(tree)).split('\n')) {
        const QByteArray text = line.trimmed();
        if (text.isEmpty())
            continue;
        const Node node = nodeOfLine(text);
        ancestors.resize(static_cast<std::size_t>(line.indexOf(text.front()) / 2));
        if (ancestors.empty()) {
            registry_.setRoot(node);
        } else {
            const QByteArray link =
                plane + ' ' + QByteArray::number(ancestors.back()) + ' ' + QByteArray::number(node);
            if (!links_.contains(link))
                registry_.link(ancestors.back(), node, plane);
            links_.insert(link);
        }
        ancestors.push_back(node);
    }
    registry_.publishPlanes();
    return *this;
}

TreeBuilder::Node TreeBuilder::nodeOfLine(const QByteArray &line)
{
    QByteArray name = line;
    const QString chain = QString::fromUtf8(cutAfter(name, " : "));
    const QByteArray given = cutAfter(name, " #");
    const QByteArray label = given.isEmpty() ? name : given;
    if (const Node known = nodes_.value(label))
        return known;
    const QStringList classes = !chain.isEmpty()   ? chain.split(QStringLiteral(" : "))
                                : nodes_.isEmpty() ? rootClasses
                                                   : deviceClasses;
    registry_.addClassChain(classes);
    const QByteArray location = cutAfter(name, "@");
    const Node node = registry_.add(classes.constFirst(), name, location);
    nodes_.insert(label, node);
    return node;
}
