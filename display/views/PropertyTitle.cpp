// SPDX-License-Identifier: Apache-2.0
#include "display/views/PropertyTitle.h"

#include "display/PropertyCounterparts.h"
#include "platform/widgets/VisibleText.h"

namespace {
constexpr qsizetype maxLength = 60; // to fit into a menu
}

QString PropertyTitle::of(const TavRegistryProperty &property)
{
    QString positions;
    const TavRegistryProperty *node = &property;
    while (node->parent() && node->parent()->valueType() != RegistryValue::Type::Dictionary) {
        positions.prepend(QStringLiteral("[%1]").arg(PropertyCounterparts::position(*node)));
        node = node->parent();
    }
    return cutText(visibleCharacters(node->name()), maxLength) + positions;
}
