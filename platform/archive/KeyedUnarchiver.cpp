// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/KeyedUnarchiver.h"

#include "platform/runloop/Disposal.h"

KeyedUnarchiver::KeyedUnarchiver(const QByteArray &bytes, const ArchiveParser::Report &report)
{
    ArchiveParser parser(bytes, report);
    const auto archive = std::make_shared<ParsedArchive>();
    if (!parser.parse(*archive))
        fail(parser.errorString(), {});
    shapes_ = std::move(archive->shapes);
    archive_ = archive;
    isOfNewerFormat_ = parser.isOfNewerFormat();
}

KeyedUnarchiver::KeyedUnarchiver(const KeyedUnarchiver &archive, Silently)
    : archive_(archive.archive_)
    , shapes_(archive.shapes_)
    , isOfNewerFormat_(archive.isOfNewerFormat_)
    , isSilent_(true)
{}

KeyedUnarchiver::~KeyedUnarchiver()
{
    if (objectCount() >= Disposal::worthwhile)
        Disposal::later(std::const_pointer_cast<ParsedArchive>(std::move(archive_)));
}

ObjectDecoder KeyedUnarchiver::object(ArchiveReference reference)
{
    Q_ASSERT(reference.index < archive_->objects.size());
    return ObjectDecoder(*this, reference);
}

void KeyedUnarchiver::fail(const QString &message, const QString &userInfo)
{
    if (!error_)
        error_ = {message, userInfo};
}
