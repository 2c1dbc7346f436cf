#include "model/linux/ReadingWait.h"

Wait::Subject ReadingWait::subject()
{
    shown_ = slowStep_->waitedFor();
    if (shown_.object.isNull())
        return {};
    // The object's own folder has no name below it.
    const QByteArray part = shown_.path.mid(shown_.object.size() + 1);
    return {QString::fromUtf8(shown_.object), part.isEmpty() ? QString() : QString::fromUtf8(part)};
}
