// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/FakeRegistryService.h"

#include <QSet>

// Makes a registry from indented text, one object a line, two more spaces for each level:
//
//     Root
//       Host
//         disk@0 #a : DxDisk : DxDevice : DxService
//         disk@0 #b
//
// A line is a name, with a location, a label and a chain of classes where wanted. The label, or
// else the name with its location, says which object is meant: the same one in every line and
// plane.
class TreeBuilder
{
public:
    using Node = FakeRegistry::Node;

    explicit TreeBuilder(FakeRegistryService &registry)
        : registry_(registry)
    {}

    // Adds the text's objects to the plane. Its first line is the registry's root.
    TreeBuilder &plane(const QByteArray &plane, const char *tree);
    Node operator[](const char *label) const { return nodes_.value(QByteArray(label)); }

private:
    Node nodeOfLine(const QByteArray &line);

    FakeRegistryService &registry_;
    QHash<QByteArray, Node> nodes_;
    QSet<QByteArray> links_;
};
