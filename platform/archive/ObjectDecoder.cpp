// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/ObjectDecoder.h"

#include "platform/archive/KeyedUnarchiver.h"

#include <cstring>

using Kind = PackedKind;

namespace {

ArchiveKinds flagOf(Kind kind)
{
    switch (kind) {
    case Kind::Null:
        return ArchiveKind::Null;
    case Kind::False:
    case Kind::True:
        return ArchiveKind::Boolean;
    case Kind::String:
        return ArchiveKind::String;
    case Kind::Date:
        return ArchiveKind::Date;
    case Kind::Data:
        return ArchiveKind::Data;
    case Kind::List:
        return ArchiveKind::List;
    case Kind::Dictionary:
        return ArchiveKind::Dictionary;
    default:
        return PackedValues::isNumber(kind) ? ArchiveKind::Number : ArchiveKinds();
    }
}

bool isSame(const QByteArray &name, QLatin1String ascii)
{
    // Runs a dozen times for each object; comparing lengths first avoids most calls.
    return name.size() == ascii.size() &&
           std::memcmp(name.constData(), ascii.data(), static_cast<std::size_t>(ascii.size())) == 0;
}

ArchiveNumber numberOf(Kind kind, quint64 bits)
{
    return {bits, PackedValues::numberWidth(kind), PackedValues::isSignedNumber(kind)};
}

// Builds values; recursion is safe because parsing limits the depth.
class ValueBuilder
{
public:
    explicit ValueBuilder(const ParsedArchive &archive)
        : archive_(archive)
    {}

    ArchiveValue value(Kind kind, quint64 payload) const
    {
        switch (kind) {
        case Kind::Absent:
            return {};
        case Kind::Null:
            return ArchiveNull();
        case Kind::False:
        case Kind::True:
            return kind == Kind::True;
        case Kind::Object:
            return ArchiveReference{static_cast<quint32>(payload)};
        case Kind::String:
            return archive_.string(payload);
        case Kind::Date:
            return archive_.dates[payload];
        case Kind::Data:
            return archive_.data[payload];
        case Kind::List:
            return list(payload);
        case Kind::Dictionary:
            return dictionary(payload);
        default:
            return numberOf(kind, payload);
        }
    }

private:
    ArchiveValue element(std::size_t item) const
    {
        const Kind kind = archive_.elements.kind(item);
        return value(kind,
                     PackedValues::isContainer(kind) ? item : archive_.elements.payload(item));
    }
    ArchiveList list(std::size_t start) const
    {
        ArchiveList list;
        const std::size_t end = archive_.elements.next(start);
        for (std::size_t item = start + 1; item < end; item = archive_.elements.next(item))
            list.push_back(element(item));
        return list;
    }
    ArchiveDictionary dictionary(std::size_t start) const
    {
        ArchiveDictionary dictionary;
        const std::size_t end = archive_.elements.next(start);
        for (std::size_t key = start + 1; key < end; key = archive_.elements.next(key + 1))
            dictionary.push_back(
                {archive_.string(archive_.elements.payload(key)), element(key + 1)});
        return dictionary;
    }

    const ParsedArchive &archive_;
};

} // namespace

ObjectDecoder::ObjectDecoder(KeyedUnarchiver &unarchiver, ArchiveReference reference)
    : unarchiver_(&unarchiver)
    , shape_(&unarchiver.shapes_[unarchiver.archive_->objects[reference.index].shape])
    , firstField_(unarchiver.archive_->objects[reference.index].firstField)
    , reference_(reference)
{}

const QByteArray &ObjectDecoder::className() const
{
    return shape_->className;
}

bool ObjectDecoder::isOfClass(ArchiveClassNames classes) const
{
    return isAllowed(reference_.index, classes);
}

bool ObjectDecoder::isAllowed(quint64 object, ArchiveClassNames classes) const
{
    const ParsedArchive::Shape &shape =
        unarchiver_->shapes_[unarchiver_->archive_->objects[object].shape];
    if (!classes.empty() && shape.allowedBy == classes.data())
        return true;
    const bool isAllowed = std::any_of(classes.begin(), classes.end(), [&](QLatin1String allowed) {
        return isSame(shape.className, allowed);
    });
    if (isAllowed)
        shape.allowedBy = classes.data();
    return isAllowed;
}

std::optional<std::size_t> ObjectDecoder::column(QLatin1String key) const
{
    const auto &keys = shape_->keys;
    for (std::size_t i = nextColumn_; i < keys.size(); ++i) {
        if (keys[i].matchedLiteral == key.data()) {
            nextColumn_ = i + 1;
            return i;
        }
    }
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (isSame(keys[i].name, key)) {
            keys[i].matchedLiteral = key.data();
            nextColumn_ = i + 1;
            return i;
        }
    }
    return {};
}

ObjectDecoder::Item ObjectDecoder::item(QLatin1String key) const
{
    const auto found = column(key);
    if (!found || unarchiver_->error())
        return {Kind::Absent, 0};
    const PackedValues &fields = unarchiver_->archive_->fields;
    const std::size_t field = firstField_ + *found;
    return {fields.kind(field), fields.payload(field)};
}

ObjectDecoder::Item ObjectDecoder::itemOfKind(QLatin1String key, Kind kind) const
{
    const Item found = item(key);
    if (found.kind == kind || found.kind == Kind::Absent)
        return found;
    failKind(key);
    return {Kind::Absent, 0};
}

void ObjectDecoder::failKind(QLatin1String key) const
{
    unarchiver_->fail(
        QStringLiteral("the value is of a kind or class that is not allowed"),
        QStringLiteral("key \"%1\" of object %2, class \"%3\"")
            .arg(key, QString::number(reference_.index), QString::fromUtf8(className())));
}

Kind ObjectDecoder::kindOf(QLatin1String key) const
{
    const std::size_t next = nextColumn_; // a query must not move the reading position
    const Kind kind = item(key).kind;
    nextColumn_ = next;
    return kind;
}

bool ObjectDecoder::contains(QLatin1String key) const
{
    return kindOf(key) != Kind::Absent;
}

bool ObjectDecoder::containsData(QLatin1String key) const
{
    return kindOf(key) == Kind::Data;
}

bool ObjectDecoder::containsNumber(QLatin1String key) const
{
    return PackedValues::isNumber(kindOf(key));
}

bool ObjectDecoder::decodeBoolean(QLatin1String key) const
{
    const Item found = item(key);
    if (found.kind != Kind::True && found.kind != Kind::False && found.kind != Kind::Absent)
        failKind(key);
    return found.kind == Kind::True;
}

std::optional<ArchiveNumber> ObjectDecoder::decodeNumber(QLatin1String key) const
{
    const Item found = item(key);
    if (PackedValues::isNumber(found.kind))
        return numberOf(found.kind, found.payload);
    if (found.kind != Kind::Absent)
        failKind(key);
    return {};
}

QString ObjectDecoder::decodeString(QLatin1String key) const
{
    const Item found = itemOfKind(key, Kind::String);
    return found.kind == Kind::String ? unarchiver_->archive_->string(found.payload) : QString();
}

QDateTime ObjectDecoder::decodeDate(QLatin1String key) const
{
    const Item found = itemOfKind(key, Kind::Date);
    return found.kind == Kind::Date ? unarchiver_->archive_->dates[found.payload] : QDateTime();
}

QByteArray ObjectDecoder::decodeData(QLatin1String key) const
{
    const Item found = itemOfKind(key, Kind::Data);
    return found.kind == Kind::Data ? unarchiver_->archive_->data[found.payload] : QByteArray();
}

std::optional<QStringList> ObjectDecoder::decodeStrings(QLatin1String key) const
{
    const Item found = itemOfKind(key, Kind::List);
    if (found.kind == Kind::Absent)
        return {};
    const PackedValues &elements = unarchiver_->archive_->elements;
    const std::size_t end = elements.next(found.payload);
    QStringList list;
    for (std::size_t element = found.payload + 1; element < end; ++element) {
        if (elements.kind(element) != Kind::String) {
            failKind(key);
            return {};
        }
        list.append(unarchiver_->archive_->string(elements.payload(element)));
    }
    return list;
}

std::optional<ArchiveReference> ObjectDecoder::decodeReference(QLatin1String key,
                                                               ArchiveClassNames classes) const
{
    const Item found = itemOfKind(key, Kind::Object);
    if (found.kind == Kind::Absent)
        return {};
    if (isAllowed(found.payload, classes))
        return ArchiveReference{static_cast<quint32>(found.payload)};
    failKind(key);
    return {};
}

std::optional<std::vector<ArchiveReference>>
ObjectDecoder::decodeReferences(QLatin1String key, ArchiveClassNames classes) const
{
    const Item found = itemOfKind(key, Kind::List);
    if (found.kind == Kind::Absent)
        return {};
    const PackedValues &elements = unarchiver_->archive_->elements;
    const std::size_t start = found.payload;
    std::vector<ArchiveReference> list(elements.payload(start));
    for (std::size_t i = 0; i < list.size(); ++i) {
        const std::size_t element = start + 1 + i;
        if (elements.kind(element) != Kind::Object ||
            !isAllowed(elements.payload(element), classes)) {
            failKind(key);
            return {};
        }
        list[i].index = static_cast<quint32>(elements.payload(element));
    }
    return list;
}

ObjectDecoder::Item ObjectDecoder::itemOfKinds(QLatin1String key, ArchiveKinds kinds,
                                               ArchiveClassNames classes) const
{
    const Item found = item(key);
    const auto allowed = [&](Kind kind, quint64 payload) {
        return kind == Kind::Object ? isAllowed(payload, classes)
                                    : (kinds & flagOf(kind)) || kind == Kind::Absent;
    };
    const PackedValues &elements = unarchiver_->archive_->elements;
    bool ok = allowed(found.kind, found.payload);
    if (ok && PackedValues::isContainer(found.kind)) {
        const std::size_t end = elements.next(found.payload);
        for (std::size_t item = found.payload + 1; item < end && ok; ++item)
            ok = allowed(elements.kind(item), elements.payload(item));
    }
    if (ok)
        return found;
    failKind(key);
    return {Kind::Absent, 0};
}

ArchiveValue ObjectDecoder::decodeValue(QLatin1String key, ArchiveKinds kinds,
                                        ArchiveClassNames classes) const
{
    const auto [kind, payload] = itemOfKinds(key, kinds, classes);
    return ValueBuilder(*unarchiver_->archive_).value(kind, payload);
}

ArchiveValueView ObjectDecoder::valueView(QLatin1String key, ArchiveKinds kinds,
                                          ArchiveClassNames classes) const
{
    const auto [kind, payload] = itemOfKinds(key, kinds, classes);
    return {*unarchiver_->archive_, kind, payload};
}
