// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/ArchiveParser.h"

#include "platform/archive/ArchiveFormat.h"

#include <QSet>

using Type = CborReader::Type;

namespace {
constexpr std::size_t reportInterval = 4096; // objects
constexpr qsizetype minThreadedSize = qsizetype(1) << 20;

QByteArray digestOf(QByteArrayView bytes)
{
    QCryptographicHash hash(ArchiveFormat::digest);
    hash.addData(bytes);
    return hash.result();
}
} // namespace

ArchiveParser::ArchiveParser(const QByteArray &bytes, Report report)
    : bytes_(bytes)
    , report_(std::move(report))
    , cbor_(bytes_)
    , values_(cbor_, archive_)
{
    if (bytes_.size() >= minThreadedSize)
        digest_ = std::async(std::launch::async, digestOf,
                             QByteArrayView(bytes_).chopped(ArchiveFormat::digestSize));
    // Roughly what a large archive needs, so that the vectors seldom grow.
    const auto size = static_cast<std::size_t>(bytes_.size());
    archive_.fields.reserve(size / 4);
    archive_.elements.reserve(size / 16);
    archive_.objects.reserve(size / 32);
}

bool ArchiveParser::parse(ParsedArchive &archive)
{
    if (!readHeader() || !readObjects() || !readDigest() || !cbor_.leave())
        return false;
    if (cbor_.offset() != bytes_.size())
        return cbor_.fail("data follows the archive");
    archive = std::move(archive_);
    return true;
}

bool ArchiveParser::readHeader()
{
    QString name;
    if (cbor_.type() != Type::Tag || cbor_.argument() != ArchiveFormat::signatureTag ||
        !cbor_.next() || !cbor_.enterArray() || !cbor_.readText(name) ||
        name != ArchiveFormat::name)
        return cbor_.fail("this is not an archive");
    const quint64 version = cbor_.type() == Type::Unsigned ? cbor_.argument() : 0;
    isOfNewerFormat_ = version > ArchiveFormat::version;
    if (version != ArchiveFormat::version)
        return cbor_.fail("the version of the archive's format is unknown");
    return cbor_.next();
}

bool ArchiveParser::readObjects()
{
    if (!cbor_.enterArray())
        return false;
    while (cbor_.hasNext()) {
        if (!readObject())
            return false;
        if (report_ && archive_.objects.size() % reportInterval == 0)
            report_(static_cast<double>(cbor_.offset()) / static_cast<double>(bytes_.size()));
    }
    if (!cbor_.leave())
        return false;
    return archive_.objects.size() > values_.maxReference() || cbor_.fail("an object is missing");
}

bool ArchiveParser::readObject()
{
    ParsedArchive::Object object{0, archive_.fields.size()};
    if (!cbor_.enterArray() || !readShape(object.shape))
        return false;
    for (const ParsedArchive::Key &key : archive_.shapes[object.shape].keys) {
        if (!(key.isInteger ? values_.readInteger() : values_.readValue()))
            return false;
    }
    archive_.objects.push_back(object);
    return cbor_.leave();
}

bool ArchiveParser::readShape(quint32 &shape)
{
    if (cbor_.type() != Type::Unsigned) {
        shape = static_cast<quint32>(archive_.shapes.size());
        return readNewShape(archive_.shapes.emplace_back());
    }
    const quint64 number = cbor_.argument();
    if (number >= archive_.shapes.size())
        return cbor_.fail("a shape is missing");
    shape = static_cast<quint32>(number);
    return cbor_.next();
}

bool ArchiveParser::readNewShape(ParsedArchive::Shape &shape)
{
    if (!cbor_.enterArray() || !readName(shape.className))
        return false;
    QSet<QByteArray> names;
    while (cbor_.hasNext()) {
        ParsedArchive::Key &key = shape.keys.emplace_back();
        if (!readKey(key))
            return false;
        if (names.contains(key.name))
            return cbor_.fail("a key occurs twice");
        names.insert(key.name);
    }
    return cbor_.leave();
}

bool ArchiveParser::readKey(ParsedArchive::Key &key)
{
    key.isInteger = cbor_.type() == Type::Array;
    if (!key.isInteger)
        return readName(key.name);
    return cbor_.enterArray() && readName(key.name) && cbor_.leave();
}

bool ArchiveParser::readName(QByteArray &name)
{
    QString text;
    if (!cbor_.readText(text))
        return false;
    name = text.toUtf8();
    return true;
}

bool ArchiveParser::readDigest()
{
    const qint64 digested = cbor_.offset();
    QByteArray digest;
    if (!cbor_.readBytes(digest))
        return false;
    const bool isAtEnd = digested == bytes_.size() - ArchiveFormat::digestSize;
    const QByteArray found = digest_.valid() && isAtEnd
                                 ? digest_.get()
                                 : digestOf(QByteArrayView(bytes_).first(digested));
    return found == digest || cbor_.fail("the archive is damaged");
}
