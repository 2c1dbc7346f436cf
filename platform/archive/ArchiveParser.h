// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/ArchiveValueParser.h"

#include <functional>
#include <future>

// Parses the bytes of an archive. They are untrusted: time and memory are proportional to their
// number, and only a valid archive is accepted.
class ArchiveParser
{
public:
    using Report = std::function<void(double part)>; // may throw to cancel

    ArchiveParser(const QByteArray &bytes, Report report); // null: none

    bool parse(ParsedArchive &archive); // leaves it alone on failure
    // Whether parsing failed because a newer version of this program wrote the archive.
    bool isOfNewerFormat() const { return isOfNewerFormat_; }
    const QString &errorString() const { return cbor_.errorString(); }

private:
    bool readHeader();
    bool readObjects();
    bool readObject();
    bool readShape(quint32 &shape);
    bool readNewShape(ParsedArchive::Shape &shape);
    bool readKey(ParsedArchive::Key &key);
    bool readName(QByteArray &name);
    bool readDigest();

    QByteArray bytes_;
    std::future<QByteArray> digest_; // computed in parallel; invalid for a small archive
    Report report_;                  // null: none
    CheckedCborReader cbor_;
    ParsedArchive archive_;
    ArchiveValueParser values_;
    bool isOfNewerFormat_ = false;
};
