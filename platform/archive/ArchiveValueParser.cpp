// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/ArchiveValueParser.h"

#include "platform/archive/ArchiveFormat.h"

#include <QtEndian>
#include <cmath>

using Kind = PackedKind;
using Type = CborReader::Type;

namespace {
constexpr quint64 dateTag = 1;

bool isNumber(CborReader::Type type)
{
    return type == CborReader::Type::Unsigned || type == CborReader::Type::Negative ||
           type >= CborReader::Type::Half;
}

} // namespace

ArchiveValueParser::ArchiveValueParser(CheckedCborReader &cbor, ParsedArchive &archive)
    : cbor_(cbor)
    , archive_(archive)
{}

bool ArchiveValueParser::readInteger()
{
    if (cbor_.type() == Type::Unsigned)
        archive_.fields.add(Kind::Integer, cbor_.argument());
    else if (cbor_.type() == Type::Negative)
        archive_.fields.add(Kind::NegativeInteger, cbor_.argument());
    else
        return cbor_.fail("an integer is missing");
    return cbor_.next();
}

bool ArchiveValueParser::readValue()
{
    if (!readItem(archive_.fields))
        return false;
    while (!open_.empty()) {
        if (!(cbor_.hasNext() ? readElement() : closeContainer()))
            return false;
    }
    return true;
}

bool ArchiveValueParser::readElement()
{
    if (!open_.back().isDictionary)
        return readItem(archive_.elements);
    if (cbor_.type() != Type::Text && cbor_.type() != Type::Negative)
        return cbor_.fail("a dictionary's key is not a string");
    if (!readItem(archive_.elements))
        return false;
    if (archive_.elements.kind(archive_.elements.size() - 1) != Kind::String)
        return cbor_.fail("a dictionary's key is not a string");
    return readItem(archive_.elements);
}

bool ArchiveValueParser::readItem(PackedValues &items)
{
    switch (cbor_.type()) {
    case Type::Unsigned:
        return readReference(items);
    case Type::Negative:
        return readSharedReference(items);
    case Type::Text:
        return readNewString(items);
    case Type::Bytes:
        return readData(items);
    case Type::Array:
        return openContainer(items, Kind::List);
    case Type::Map:
        return openContainer(items, Kind::Dictionary);
    case Type::Tag:
        return readTagged(items);
    case Type::Simple:
        return readSimple(items);
    default:
        return cbor_.fail("a value is missing or of unknown kind");
    }
}

bool ArchiveValueParser::readReference(PackedValues &items)
{
    const quint64 index = cbor_.argument();
    maxReference_ = std::max(maxReference_, index);
    items.add(Kind::Object, index);
    return cbor_.next();
}

bool ArchiveValueParser::readSharedReference(PackedValues &items)
{
    const quint64 index = cbor_.argument();
    if (index >= archive_.shared.size())
        return cbor_.fail("a shared value is missing");
    items.add(archive_.shared.kind(index), archive_.shared.payload(index));
    return cbor_.next();
}

bool ArchiveValueParser::readNewString(PackedValues &items)
{
    QString text;
    if (!cbor_.readText(text))
        return false;
    const auto index = static_cast<quint64>(archive_.strings.size());
    archive_.strings.append(std::move(text));
    archive_.shared.add(Kind::String, index);
    items.add(Kind::String, index);
    return true;
}

bool ArchiveValueParser::readTagged(PackedValues &items)
{
    const quint64 tag = cbor_.argument();
    if (!cbor_.next())
        return false;
    if (tag == dateTag)
        return readDate(items);
    // 64 to 67 unsigned, 72 to 75 signed: 1, 2, 4 and 8 bytes.
    if ((tag & ~quint64(0b1011)) == 64)
        return readNumber(items, static_cast<Kind>(tag));
    return cbor_.fail("a value is of unknown kind");
}

bool ArchiveValueParser::readDate(PackedValues &items)
{
    if (!isNumber(cbor_.type()))
        return cbor_.fail("a date is missing");
    constexpr double maxSeconds = 1e12; // beyond this a double cannot hold milliseconds
    const double seconds = cbor_.toDouble();
    if (!(std::abs(seconds) < maxSeconds))
        return cbor_.fail("a date is out of range");
    const quint64 index = archive_.dates.size();
    archive_.dates.push_back(QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), Qt::UTC));
    archive_.shared.add(Kind::Date, index);
    items.add(Kind::Date, index);
    return cbor_.next();
}

bool ArchiveValueParser::readNumber(PackedValues &items, Kind kind)
{
    QByteArray bytes;
    if (!cbor_.readBytes(bytes))
        return false;
    const int width = PackedValues::numberWidth(kind);
    if (bytes.size() != width)
        return cbor_.fail("a number has the wrong width");
    bytes.prepend(8 - width, '\0');
    items.add(kind, qFromBigEndian<quint64>(bytes.constData()));
    return true;
}

bool ArchiveValueParser::readData(PackedValues &items)
{
    items.add(Kind::Data, archive_.data.size());
    return cbor_.readBytes(archive_.data.emplace_back());
}

bool ArchiveValueParser::readSimple(PackedValues &items)
{
    switch (cbor_.argument()) {
    case CborReader::False:
        items.add(Kind::False);
        break;
    case CborReader::True:
        items.add(Kind::True);
        break;
    case CborReader::Null:
        items.add(Kind::Null);
        break;
    case CborReader::Undefined:
        items.add(Kind::Absent);
        break;
    default:
        return cbor_.fail("a value is of unknown kind");
    }
    return cbor_.next();
}

bool ArchiveValueParser::openContainer(PackedValues &items, Kind kind)
{
    if (open_.size() == ArchiveFormat::maxNesting)
        return cbor_.fail("lists are nested too deeply");
    const std::size_t start = archive_.elements.size();
    if (&items == &archive_.fields)
        archive_.fields.add(kind, start);
    archive_.elements.add(kind);
    open_.push_back({start, kind == Kind::Dictionary});
    return cbor_.enterContainer();
}

bool ArchiveValueParser::closeContainer()
{
    if (!cbor_.leave())
        return false;
    const auto [start, isDictionary] = open_.back();
    open_.pop_back();
    archive_.elements.setPayload(start, archive_.elements.size() - start - 1);
    return !isDictionary || hasDistinctKeys(start) ||
           cbor_.fail("a key occurs twice in a dictionary");
}

bool ArchiveValueParser::hasDistinctKeys(std::size_t dictionary)
{
    const PackedValues &items = archive_.elements;
    const std::size_t end = items.next(dictionary);
    keys_.clear();
    for (std::size_t key = dictionary + 1; key < end; key = items.next(key + 1)) {
        const quint64 index = items.payload(key);
        keys_.push_back(keyNumbers_.number(index, archive_.string(index)));
    }
    std::sort(keys_.begin(), keys_.end());
    return std::adjacent_find(keys_.begin(), keys_.end()) == keys_.end();
}
