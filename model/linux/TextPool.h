// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/CompactArray.h"

#include <QHash>

// Lets the keys and short texts of one reader thread share storage.
class TextPool
{
public:
    CompactString text(QByteArrayView utf8);

private:
    QHash<QByteArray, CompactString> texts_;
};
