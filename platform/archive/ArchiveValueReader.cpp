#include "platform/archive/ArchiveValueReader.h"

#include "platform/archive/ArchiveFormat.h"

#include <QtEndian>
#include <cmath>

using Kind = ArchiveItemKind;
using Type = CborReader::Type;

namespace {
constexpr quint64 dateTag = 1;

bool isNumber(CborReader::Type type)
{
    return type == CborReader::Type::Unsigned || type == CborReader::Type::Negative ||
           type >= CborReader::Type::Half;
}

} // namespace

ArchiveValueReader::ArchiveValueReader(ArchiveInput &input, ArchiveTable &table)
    : input_(input)
    , cbor_(input.cbor)
    , table_(table)
{}

bool ArchiveValueReader::readInteger()
{
    if (cbor_.type() == Type::Unsigned)
        table_.fields.add(Kind::Integer, cbor_.argument());
    else if (cbor_.type() == Type::Negative)
        table_.fields.add(Kind::NegativeInteger, cbor_.argument());
    else
        return input_.fail("an integer is missing");
    return input_.next();
}

bool ArchiveValueReader::readValue()
{
    if (!readItem(table_.fields))
        return false;
    while (!open_.empty()) {
        if (!(cbor_.hasNext() ? readElement() : closeContainer()))
            return false;
    }
    return true;
}

bool ArchiveValueReader::readElement()
{
    if (!open_.back().isDictionary)
        return readItem(table_.elements);
    if (cbor_.type() != Type::Text && cbor_.type() != Type::Negative)
        return input_.fail("a dictionary's key is no string");
    if (!readItem(table_.elements))
        return false;
    if (table_.elements.kind(table_.elements.size() - 1) != Kind::String)
        return input_.fail("a dictionary's key is no string");
    return readItem(table_.elements);
}

bool ArchiveValueReader::readItem(ArchiveItems &items)
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
        return input_.fail("a value is missing or of unknown kind");
    }
}

bool ArchiveValueReader::readReference(ArchiveItems &items)
{
    const quint64 index = cbor_.argument();
    highestReference_ = std::max(highestReference_, index);
    items.add(Kind::Object, index);
    return input_.next();
}

bool ArchiveValueReader::readSharedReference(ArchiveItems &items)
{
    const quint64 index = cbor_.argument();
    if (index >= table_.shared.size())
        return input_.fail("a shared value is missing");
    items.add(table_.shared.kind(index), table_.shared.payload(index));
    return input_.next();
}

bool ArchiveValueReader::readNewString(ArchiveItems &items)
{
    QString text;
    if (!input_.readText(text))
        return false;
    const auto index = static_cast<quint64>(table_.strings.size());
    table_.strings.append(std::move(text));
    table_.shared.add(Kind::String, index);
    items.add(Kind::String, index);
    return true;
}

bool ArchiveValueReader::readTagged(ArchiveItems &items)
{
    const quint64 tag = cbor_.argument();
    if (!input_.next())
        return false;
    if (tag == dateTag)
        return readDate(items);
    // 64 to 67 without and 72 to 75 with sign, for 1, 2, 4 and 8 bytes.
    if ((tag & ~quint64(0b1011)) == 64)
        return readNumber(items, static_cast<Kind>(tag));
    return input_.fail("a value is of unknown kind");
}

bool ArchiveValueReader::readDate(ArchiveItems &items)
{
    if (!isNumber(cbor_.type()))
        return input_.fail("a date is missing");
    constexpr double furthest = 1e12; // beyond it a double cannot tell milliseconds
    const double seconds = cbor_.toDouble();
    if (!(std::abs(seconds) < furthest))
        return input_.fail("a date is out of range");
    const quint64 index = table_.dates.size();
    table_.dates.push_back(QDateTime::fromMSecsSinceEpoch(std::llround(seconds * 1000), Qt::UTC));
    table_.shared.add(Kind::Date, index);
    items.add(Kind::Date, index);
    return input_.next();
}

bool ArchiveValueReader::readNumber(ArchiveItems &items, Kind kind)
{
    QByteArray bytes;
    if (!input_.readBytes(bytes))
        return false;
    const int width = ArchiveItems::numberWidth(kind);
    if (bytes.size() != width)
        return input_.fail("a number has the wrong width");
    bytes.prepend(8 - width, '\0');
    items.add(kind, qFromBigEndian<quint64>(bytes.constData()));
    return true;
}

bool ArchiveValueReader::readData(ArchiveItems &items)
{
    items.add(Kind::Data, table_.data.size());
    return input_.readBytes(table_.data.emplace_back());
}

bool ArchiveValueReader::readSimple(ArchiveItems &items)
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
        return input_.fail("a value is of unknown kind");
    }
    return input_.next();
}

bool ArchiveValueReader::openContainer(ArchiveItems &items, Kind kind)
{
    if (open_.size() == ArchiveFormat::deepestNesting)
        return input_.fail("lists are nested too deeply");
    const std::size_t start = table_.elements.size();
    if (&items == &table_.fields)
        table_.fields.add(kind, start);
    table_.elements.add(kind);
    open_.push_back({start, kind == Kind::Dictionary});
    return cbor_.enter() || input_.fail("a list is damaged");
}

bool ArchiveValueReader::closeContainer()
{
    if (!input_.leave())
        return false;
    const auto [start, isDictionary] = open_.back();
    open_.pop_back();
    table_.elements.setPayload(start, table_.elements.size() - start - 1);
    return !isDictionary || hasDistinctKeys(start) ||
           input_.fail("a key occurs twice in a dictionary");
}

bool ArchiveValueReader::hasDistinctKeys(std::size_t dictionary)
{
    const ArchiveItems &items = table_.elements;
    const std::size_t end = items.next(dictionary);
    keys_.clear();
    for (std::size_t key = dictionary + 1; key < end; key = items.next(key + 1)) {
        const quint64 index = items.payload(key);
        keys_.push_back(keyNumbers_.number(index, table_.string(index)));
    }
    std::sort(keys_.begin(), keys_.end());
    return std::adjacent_find(keys_.begin(), keys_.end()) == keys_.end();
}
