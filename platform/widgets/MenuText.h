#pragma once

#include <QString>

// The title of a menu item for a text that is not ours: an ampersand in it marks no mnemonic.
inline QString menuText(QString text)
{
    return text.replace(u'&', QLatin1String("&&"));
}
