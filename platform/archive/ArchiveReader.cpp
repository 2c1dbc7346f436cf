#include "platform/archive/ArchiveReader.h"

#include "platform/archive/ArchiveFormat.h"

#include <QSet>

using Type = CborReader::Type;

namespace {
constexpr std::size_t betweenReports = 4096; // in objects
constexpr qsizetype worthAThread = qsizetype(1) << 20;

QByteArray digestOf(QByteArrayView bytes)
{
    QCryptographicHash hash(ArchiveFormat::digest);
    hash.addData(bytes);
    return hash.result();
}
} // namespace

ArchiveReader::ArchiveReader(const QByteArray &bytes, Report report)
    : bytes_(bytes)
    , report_(std::move(report))
    , input_(bytes_)
    , values_(input_, table_)
{
    if (bytes_.size() >= worthAThread)
        digest_ = std::async(std::launch::async, digestOf,
                             QByteArrayView(bytes_).chopped(ArchiveFormat::digestedEnd));
    // About what a large archive needs, so that growing does not copy it again and again.
    const auto size = static_cast<std::size_t>(bytes_.size());
    table_.fields.reserve(size / 4);
    table_.elements.reserve(size / 16);
    table_.objects.reserve(size / 32);
}

bool ArchiveReader::read(ArchiveTable &table)
{
    if (!readHeader() || !readObjects() || !readDigest() || !input_.leave())
        return false;
    if (input_.cbor.offset() != bytes_.size())
        return input_.fail("something follows the archive");
    table = std::move(table_);
    return true;
}

bool ArchiveReader::readHeader()
{
    QString name;
    if (input_.cbor.type() != Type::Tag || input_.cbor.argument() != ArchiveFormat::signatureTag ||
        !input_.next() || !input_.enter() || !input_.readText(name) || name != ArchiveFormat::name)
        return input_.fail("this is no archive");
    const quint64 version = input_.cbor.type() == Type::Unsigned ? input_.cbor.argument() : 0;
    isOfNewerFormat_ = version > ArchiveFormat::version;
    if (version != ArchiveFormat::version)
        return input_.fail("the version of the archive's format is unknown");
    return input_.next();
}

bool ArchiveReader::readObjects()
{
    if (!input_.enter())
        return false;
    while (input_.cbor.hasNext()) {
        if (!readObject())
            return false;
        if (report_ && table_.objects.size() % betweenReports == 0)
            report_(static_cast<double>(input_.cbor.offset()) / static_cast<double>(bytes_.size()));
    }
    if (!input_.leave())
        return false;
    return table_.objects.size() > values_.highestReference() ||
           input_.fail("an object is missing");
}

bool ArchiveReader::readObject()
{
    ArchiveTable::Object object{0, table_.fields.size()};
    if (!input_.enter() || !readShape(object.shape))
        return false;
    for (const ArchiveTable::Key &key : table_.shapes[object.shape].keys) {
        if (!(key.isInteger ? values_.readInteger() : values_.readValue()))
            return false;
    }
    table_.objects.push_back(object);
    return input_.leave();
}

bool ArchiveReader::readShape(quint32 &shape)
{
    if (input_.cbor.type() != Type::Unsigned) {
        shape = static_cast<quint32>(table_.shapes.size());
        return readNewShape(table_.shapes.emplace_back());
    }
    const quint64 number = input_.cbor.argument();
    if (number >= table_.shapes.size())
        return input_.fail("a shape is missing");
    shape = static_cast<quint32>(number);
    return input_.next();
}

bool ArchiveReader::readNewShape(ArchiveTable::Shape &shape)
{
    if (!input_.enter() || !readName(shape.className))
        return false;
    QSet<QByteArray> names;
    while (input_.cbor.hasNext()) {
        ArchiveTable::Key &key = shape.keys.emplace_back();
        if (!readKey(key))
            return false;
        if (names.contains(key.name))
            return input_.fail("a key occurs twice");
        names.insert(key.name);
    }
    return input_.leave();
}

bool ArchiveReader::readKey(ArchiveTable::Key &key)
{
    key.isInteger = input_.cbor.type() == Type::Array;
    if (!key.isInteger)
        return readName(key.name);
    return input_.enter() && readName(key.name) && input_.leave();
}

bool ArchiveReader::readName(QByteArray &name)
{
    QString text;
    if (!input_.readText(text))
        return false;
    name = text.toUtf8();
    return true;
}

bool ArchiveReader::readDigest()
{
    const qint64 digested = input_.cbor.offset();
    QByteArray digest;
    if (!input_.readBytes(digest))
        return false;
    const bool isUsual = digested == bytes_.size() - ArchiveFormat::digestedEnd;
    const QByteArray found = digest_.valid() && isUsual
                                 ? digest_.get()
                                 : digestOf(QByteArrayView(bytes_).first(digested));
    return found == digest || input_.fail("the archive is damaged");
}
