// SPDX-License-Identifier: Apache-2.0
#include "store/DecodingLog.h"

#include "platform/archive/KeyedUnarchiver.h"
#include "store/StoreLogging.h"

void logUnableToDecode(const char *what, const KeyedUnarchiver &unarchiver)
{
    if (unarchiver.isSilent())
        return;
    const QString none = QStringLiteral("(null)");
    const auto &error = unarchiver.error();
    qCWarning(storeLog, "Unable to decode %s: %ls, %ls", what,
              qUtf16Printable(error ? error->message : none),
              qUtf16Printable(error ? error->userInfo : none));
}
