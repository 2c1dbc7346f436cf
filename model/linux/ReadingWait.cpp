// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ReadingWait.h"

Wait::Subject ReadingWait::subject()
{
    shown_ = slowStep_->waitedFor();
    if (shown_.object.isNull())
        return {};
    // Empty for the object's own folder.
    const QByteArray part = shown_.path.toByteArray().mid(shown_.object.size() + 1);
    return {shown_.object.toString(), part.isEmpty() ? QString() : QString::fromUtf8(part)};
}
