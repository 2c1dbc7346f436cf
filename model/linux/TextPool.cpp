// SPDX-License-Identifier: Apache-2.0
#include "model/linux/TextPool.h"

CompactString TextPool::text(QByteArrayView utf8)
{
    const QByteArray key = QByteArray::fromRawData(utf8.data(), utf8.size());
    const auto known = texts_.constFind(key);
    if (known != texts_.constEnd())
        return *known;
    constexpr qsizetype maxTexts = 100000;
    if (texts_.size() >= maxTexts)
        texts_.clear();
    return *texts_.insert(utf8.toByteArray(), CompactString(QString::fromUtf8(utf8)));
}
