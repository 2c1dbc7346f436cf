// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/tree/OutlineImages.h"

class TavRegistryOutlineItem;

// A part of the lines that lead to a node's row.
struct OutlineConnector
{
    OutlineImages::Image image;
    int x; // of its left edge, from where the rows begin

    friend bool operator==(const OutlineConnector &, const OutlineConnector &) = default;
};

// From right to left: the leaf mark if any, the connector, the ancestors' lines. None for a root.
std::vector<OutlineConnector> outlineConnectors(TavRegistryOutlineItem &item, int indentation);
