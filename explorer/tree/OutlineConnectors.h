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

// From right to left: the leaf mark if there is one, the connector, the ancestors' lines. A root
// has none.
std::vector<OutlineConnector> outlineConnectors(TavRegistryOutlineItem &item, int indentation);
