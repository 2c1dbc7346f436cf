#pragma once

#include "platform/archive/ArchiveValueReader.h"

#include <functional>
#include <future>

// Takes the bytes of an archive apart. The bytes may be anything at all: time and memory are
// proportional to their number, and nothing but a sound archive is accepted.
class ArchiveReader
{
public:
    using Report = std::function<void(double part)>; // from time to time; it may throw

    ArchiveReader(const QByteArray &bytes, Report report); // null: none

    bool read(ArchiveTable &table); // the table is of use only when that succeeds
    // Whether reading failed because a later version of this program may be able to.
    bool isOfNewerFormat() const { return isOfNewerFormat_; }
    const QString &errorString() const { return input_.errorString(); }

private:
    bool readHeader();
    bool readObjects();
    bool readObject();
    bool readShape(quint32 &shape);
    bool readNewShape(ArchiveTable::Shape &shape);
    bool readKey(ArchiveTable::Key &key);
    bool readName(QByteArray &name);
    bool readDigest();

    QByteArray bytes_;
    std::future<QByteArray>
        digest_;    // of what a digest usually follows; invalid for a small archive
    Report report_; // null: none
    ArchiveInput input_;
    ArchiveTable table_;
    ArchiveValueReader values_;
    bool isOfNewerFormat_ = false;
};
