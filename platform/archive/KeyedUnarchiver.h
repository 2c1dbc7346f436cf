// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveParser.h"
#include "platform/archive/ObjectDecoder.h"

// The reason why decoding failed, for the log.
struct ArchiveError
{
    QString message;
    QString userInfo; // where: the key, object and class
};

// A parsed archive. The caller decodes the objects in any order, each as often as it likes.
// References are not followed automatically. After an error every value is absent.
class KeyedUnarchiver
{
public:
    // Calls report with the part parsed so far.
    explicit KeyedUnarchiver(const QByteArray &bytes, const ArchiveParser::Report &report = {});
    // The same archive for another thread, with its own error, which is not logged.
    enum class Silently : quint8 { Yes };
    KeyedUnarchiver(const KeyedUnarchiver &archive, Silently);
    ~KeyedUnarchiver();
    KeyedUnarchiver(const KeyedUnarchiver &) = delete;
    KeyedUnarchiver &operator=(const KeyedUnarchiver &) = delete;

    // 0 when the bytes are not a valid archive.
    std::size_t objectCount() const { return archive_->objects.size(); }
    // Whether the bytes are in a later version of the format.
    bool isOfNewerFormat() const { return isOfNewerFormat_; }
    static constexpr ArchiveReference root{0};
    ObjectDecoder object(ArchiveReference reference);

    const std::optional<ArchiveError> &error() const { return error_; }
    bool isSilent() const { return isSilent_; }
    void fail(const QString &message, const QString &userInfo); // an earlier error stays

private:
    friend class ObjectDecoder;

    std::shared_ptr<const ParsedArchive> archive_;
    std::vector<ParsedArchive::Shape> shapes_; // a copy for each thread, as they hold caches
    std::optional<ArchiveError> error_;
    bool isOfNewerFormat_ = false;
    bool isSilent_ = false;
};
