// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/PortableFileName.h"

namespace {
constexpr qsizetype maxLength = 80; // with an extension, below 255 bytes in any script

bool isPortable(QChar character)
{
    return character.isLetterOrNumber() || character.isMark() || character.isSurrogate() ||
           QStringLiteral(" .-_").contains(character);
}
} // namespace

QString portableFileName(const QString &text)
{
    QString name = text.left(maxLength);
    for (QChar &character : name) {
        if (!isPortable(character))
            character = u'-';
    }
    name = name.trimmed();
    while (name.startsWith(u'.') || name.startsWith(u'-')) // hidden file or command-line option
        name = name.mid(1).trimmed();
    return name.isEmpty() ? QStringLiteral("Untitled") : name;
}
