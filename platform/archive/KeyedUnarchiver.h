#pragma once

#include "platform/archive/ArchiveReader.h"
#include "platform/archive/ArchivedObject.h"

// What made decoding impossible, for the log: a sentence, and what it is about.
struct ArchiveError
{
    QString message;
    QString userInfo;
};

// An archive that was read. Its objects are decoded in whatever order suits the caller, each as
// often as needed; nothing is followed from object to object by itself. After an error every value
// is absent.
class KeyedUnarchiver
{
public:
    // Reading the bytes reports the part that it has come to.
    explicit KeyedUnarchiver(const QByteArray &bytes, const ArchiveReader::Report &report = {});
    // The same archive for another thread, with an error of its own that is not reported.
    enum class Silently : quint8 { Yes };
    KeyedUnarchiver(const KeyedUnarchiver &archive, Silently);
    ~KeyedUnarchiver();
    KeyedUnarchiver(const KeyedUnarchiver &) = delete;
    KeyedUnarchiver &operator=(const KeyedUnarchiver &) = delete;

    // No object when the bytes are no sound archive.
    std::size_t objectCount() const { return table_->objects.size(); }
    // Whether the bytes are no sound archive for being in a later version of the format.
    bool isOfNewerFormat() const { return isOfNewerFormat_; }
    static constexpr ArchiveReference root{0};
    ArchivedObject object(ArchiveReference reference);

    const std::optional<ArchiveError> &error() const { return error_; }
    bool isSilent() const { return isSilent_; }
    void fail(const QString &message, const QString &userInfo); // an earlier error stays

private:
    friend class ArchivedObject;

    std::shared_ptr<const ArchiveTable> table_;
    std::vector<ArchiveTable::Shape> shapes_; // those of the table: they keep what was asked
    std::optional<ArchiveError> error_;
    bool isOfNewerFormat_ = false;
    bool isSilent_ = false;
};
