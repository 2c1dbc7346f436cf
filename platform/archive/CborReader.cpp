// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/CborReader.h"

#include <QFloat16>
#include <QtEndian>
#include <bit>

namespace {
constexpr quint8 indefinite = 31;
constexpr quint8 breakByte = 0xff;
constexpr quint64 maxItems = 0xfffffffe; // of one array or map
} // namespace

CborReader::CborReader(QByteArrayView bytes)
    : begin_(reinterpret_cast<const quint8 *>(bytes.data()))
    , at_(begin_)
    , after_(begin_)
    , end_(begin_ + bytes.size())
{
    parseHead();
}

bool CborReader::fail()
{
    hasError_ = true;
    type_ = Type::None;
    return false;
}

void CborReader::parseHead()
{
    type_ = Type::None;
    if (open_.left == 0)
        return;
    if (at_ == end_) {
        fail();
        return;
    }
    const quint8 head = *at_;
    if (open_.isIndefinite && head == breakByte)
        return;
    static constexpr Type types[] = {Type::Unsigned, Type::Negative, Type::Bytes, Type::Text,
                                     Type::Array,    Type::Map,      Type::Tag,   Type::Simple};
    const quint8 info = head & 31;
    after_ = at_ + 1;
    isIndefinite_ = info == indefinite;
    type_ = types[head >> 5];
    const bool canBeIndefinite = type_ >= Type::Bytes && type_ <= Type::Map;
    if (info < 24)
        argument_ = info;
    else if (!(isIndefinite_ ? canBeIndefinite : readArgument(info)))
        fail();
    else if (type_ == Type::Simple)
        parseSimple(info);
}

void CborReader::parseSimple(quint8 info)
{
    constexpr Type types[] = {Type::Simple, Type::Half, Type::Float, Type::Double};
    type_ = types[info - 24];
    if (info == 24 && argument_ < 32) // CBOR demands the shorter form for these
        fail();
}

bool CborReader::readArgument(quint8 info)
{
    if (info > 27 || end_ - after_ < (1 << (info - 24)))
        return false;
    switch (info) {
    case 24:
        argument_ = *after_;
        break;
    case 25:
        argument_ = qFromBigEndian<quint16>(after_);
        break;
    case 26:
        argument_ = qFromBigEndian<quint32>(after_);
        break;
    default:
        argument_ = qFromBigEndian<quint64>(after_);
        break;
    }
    after_ += 1 << (info - 24);
    return true;
}

double CborReader::toDouble() const
{
    switch (type_) {
    case Type::Unsigned:
        return static_cast<double>(argument_);
    case Type::Negative:
        return -1 - static_cast<double>(argument_);
    case Type::Half:
        return static_cast<float>(std::bit_cast<qfloat16>(static_cast<quint16>(argument_)));
    case Type::Float:
        return std::bit_cast<float>(static_cast<quint32>(argument_));
    default:
        return std::bit_cast<double>(argument_);
    }
}

bool CborReader::finishItem()
{
    if (!open_.isIndefinite)
        --open_.left;
    parseHead();
    return !hasError_;
}

bool CborReader::next()
{
    if (type_ == Type::None || (type_ >= Type::Bytes && type_ <= Type::Map))
        return false;
    at_ = after_;
    if (type_ != Type::Tag)
        return finishItem();
    parseHead(); // a tag and its content are one item
    return !hasError_;
}

bool CborReader::enter()
{
    if (type_ != Type::Array && type_ != Type::Map)
        return false;
    const quint64 perElement = type_ == Type::Map ? 2 : 1;
    if (!isIndefinite_ && argument_ > maxItems / perElement)
        return fail();
    around_.push_back(open_);
    open_ = {isIndefinite_ ? 1 : argument_ * perElement, isIndefinite_};
    at_ = after_;
    parseHead();
    return !hasError_;
}

bool CborReader::leave()
{
    if (type_ != Type::None || hasError_ || around_.empty())
        return false;
    at_ += open_.isIndefinite; // skip the break
    open_ = around_.back();
    around_.pop_back();
    return finishItem();
}

bool CborReader::readPiece(Type type, QByteArrayView &piece)
{
    if (type_ != type || isIndefinite_ || argument_ > static_cast<quint64>(end_ - after_))
        return fail();
    piece = QByteArrayView(after_, static_cast<qsizetype>(argument_));
    at_ = after_ + argument_;
    return true;
}

template<class Text, class Convert>
bool CborReader::readPieces(Type type, Text &whole, Convert convert)
{
    QByteArrayView piece;
    if (type_ != type)
        return false;
    if (!isIndefinite_)
        return readPiece(type, piece) && convert(piece, whole) && finishItem();
    around_.push_back(std::exchange(open_, {1, true}));
    at_ = after_;
    Text part;
    whole.clear();
    for (parseHead(); type_ != Type::None; parseHead()) {
        if (!readPiece(type, piece) || !convert(piece, part))
            return false;
        whole += part;
    }
    return leave();
}

bool CborReader::readText(QString &text)
{
    return readPieces(Type::Text, text, [this](QByteArrayView piece, QString &part) {
        if (!QUtf8StringView(piece.data(), piece.size()).isValidUtf8())
            return fail();
        part = QString::fromUtf8(piece);
        return true;
    });
}

bool CborReader::readBytes(QByteArray &bytes)
{
    return readPieces(Type::Bytes, bytes, [](QByteArrayView piece, QByteArray &part) {
        part = piece.toByteArray();
        return true;
    });
}
