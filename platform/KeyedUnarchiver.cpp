#include "platform/KeyedUnarchiver.h"

KeyedUnarchiver::KeyedUnarchiver(const QByteArray &bytes, const ArchiveReader::Report &report)
{
    ArchiveReader reader(bytes, report);
    if (!reader.read(table_))
        fail(reader.errorString(), {});
    isOfNewerFormat_ = reader.isOfNewerFormat();
}

ArchivedObject KeyedUnarchiver::object(ArchiveReference reference)
{
    Q_ASSERT(reference.index < table_.objects.size());
    return ArchivedObject(*this, reference);
}

void KeyedUnarchiver::fail(const QString &message, const QString &userInfo)
{
    if (!error_)
        error_ = {message, userInfo};
}
