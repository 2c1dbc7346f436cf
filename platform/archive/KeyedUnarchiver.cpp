#include "platform/archive/KeyedUnarchiver.h"

#include "platform/runloop/Disposal.h"

KeyedUnarchiver::KeyedUnarchiver(const QByteArray &bytes, const ArchiveReader::Report &report)
{
    ArchiveReader reader(bytes, report);
    const auto table = std::make_shared<ArchiveTable>();
    if (!reader.read(*table))
        fail(reader.errorString(), {});
    shapes_ = std::move(table->shapes);
    table_ = table;
    isOfNewerFormat_ = reader.isOfNewerFormat();
}

KeyedUnarchiver::KeyedUnarchiver(const KeyedUnarchiver &archive, Silently)
    : table_(archive.table_)
    , shapes_(archive.shapes_)
    , isOfNewerFormat_(archive.isOfNewerFormat_)
    , isSilent_(true)
{}

KeyedUnarchiver::~KeyedUnarchiver()
{
    if (objectCount() >= Disposal::worthwhile)
        Disposal::later(std::const_pointer_cast<ArchiveTable>(std::move(table_)));
}

ArchivedObject KeyedUnarchiver::object(ArchiveReference reference)
{
    Q_ASSERT(reference.index < table_->objects.size());
    return ArchivedObject(*this, reference);
}

void KeyedUnarchiver::fail(const QString &message, const QString &userInfo)
{
    if (!error_)
        error_ = {message, userInfo};
}
