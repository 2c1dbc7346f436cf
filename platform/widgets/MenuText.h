// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// Escapes untrusted text for a menu item: ampersands must not mark mnemonics.
inline QString menuText(QString text)
{
    return text.replace(u'&', QLatin1String("&&"));
}
