// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/PendingObject.h"

#include <QCborStreamWriter>
#include <QtEndian>

using Kind = PackedKind;

namespace {

void writeNumber(QCborStreamWriter &writer, Kind kind, quint64 bits)
{
    writer.append(static_cast<QCborTag>(kind));
    char bytes[sizeof bits];
    qToBigEndian(bits, bytes);
    const int width = PackedValues::numberWidth(kind);
    writer.appendByteString(bytes + sizeof bits - static_cast<std::size_t>(width), width);
}

void writeDate(QCborStreamWriter &writer, qint64 milliseconds)
{
    writer.append(QCborKnownTags::UnixTime_t);
    if (milliseconds % 1000 == 0)
        writer.append(milliseconds / 1000);
    else
        writer.append(static_cast<double>(milliseconds) / 1000);
}

} // namespace

void PendingObject::clear()
{
    items_.clear();
    texts_.clear();
    dates_.clear();
    data_.clear();
}

void PendingObject::addText(const QString &text)
{
    items_.add(Kind::NewString, texts_.size());
    texts_.push_back(text);
}

void PendingObject::addDate(qint64 milliseconds)
{
    items_.add(Kind::NewDate, dates_.size());
    dates_.push_back(milliseconds);
}

void PendingObject::addData(const QByteArray &bytes)
{
    items_.add(Kind::Data, data_.size());
    data_.push_back(bytes);
}

void PendingObject::write(QCborStreamWriter &writer) const
{
    std::vector<Container> open;
    for (std::size_t item = 0; item < items_.size(); ++item) {
        writeItem(writer, item);
        const Kind kind = items_.kind(item);
        if (kind == Kind::List || kind == Kind::Dictionary)
            open.push_back({kind, items_.payload(item)});
        else if (!open.empty())
            --open.back().left;
        while (!open.empty() && open.back().left == 0) {
            open.back().kind == Kind::List ? writer.endArray() : writer.endMap();
            open.pop_back();
            if (!open.empty())
                --open.back().left;
        }
    }
}

void PendingObject::writeItem(QCborStreamWriter &writer, std::size_t item) const
{
    const Kind kind = items_.kind(item);
    const quint64 payload = items_.payload(item);
    switch (kind) {
    case Kind::Absent:
        writer.append(QCborSimpleType::Undefined);
        break;
    case Kind::Null:
        writer.append(nullptr);
        break;
    case Kind::False:
    case Kind::True:
        writer.append(kind == Kind::True);
        break;
    case Kind::Integer:
    case Kind::Object:
        writer.append(payload);
        break;
    case Kind::NegativeInteger:
    case Kind::String:
    case Kind::Date:
        writer.append(QCborNegativeInteger(payload + 1));
        break;
    case Kind::NewString:
        writer.append(QStringView(texts_[payload]));
        break;
    case Kind::NewDate:
        writeDate(writer, dates_[payload]);
        break;
    case Kind::Data:
        writer.append(data_[payload]);
        break;
    case Kind::List:
        writer.startArray(payload);
        break;
    case Kind::Dictionary:
        writer.startMap(payload / 2);
        break;
    default:
        writeNumber(writer, kind, payload);
    }
}
