// SPDX-License-Identifier: Apache-2.0
#include "platform/archive/KeyedArchiver.h"

#include <QSet>
#include <limits>

using Kind = PackedKind;

namespace {

// Returns the value kept for the key and whether the key is new.
template<class Hash>
std::pair<typename Hash::mapped_type, bool>
findOrInsert(Hash &hash, const typename Hash::key_type &key, typename Hash::mapped_type value)
{
    const qsizetype before = hash.size();
    auto &kept = hash[key];
    const bool isNew = hash.size() != before;
    if (isNew)
        kept = value;
    return {kept, isNew};
}

} // namespace

KeyedArchiver::KeyedArchiver(QIODevice &device)
    : output_(device)
    , writer_(&output_)
{}

quint32 KeyedArchiver::_addClass(const QString &name, AnyEncoder encoder)
{
    classes_.push_back({name, std::move(encoder), shapes_.addClass()});
    return static_cast<quint32>(classes_.size() - 1);
}

ArchiveReference KeyedArchiver::_reference(const void *object, quint32 type)
{
    const auto next = static_cast<quint32>(objects_.size());
    const auto [index, isNew] = findOrInsert(objectIndexes_, object, next);
    if (isNew)
        objects_.push_back({object, type});
    return {index};
}

bool KeyedArchiver::_encodeObjects()
{
    _writeHeader();
    for (std::size_t index = 0; index < objects_.size() && errorString_.isNull(); ++index)
        _writeObject(index);
    if (objects_.size() > std::numeric_limits<quint32>::max())
        _fail(QStringLiteral("too many objects"));
    if (!errorString_.isNull())
        return false;
    writer_.endArray();
    _writeDigest();
    return errorString_.isNull();
}

void KeyedArchiver::_writeHeader()
{
    writer_.append(QCborKnownTags::Signature);
    writer_.startArray(4);
    writer_.append(ArchiveFormat::name);
    writer_.append(ArchiveFormat::version);
    writer_.startArray();
}

void KeyedArchiver::_writeObject(std::size_t index)
{
    const auto [address, typeNumber] = objects_[index];
    const Class &type = classes_[typeNumber];
    pending_.clear();
    position_ = type.start;
    type.encoder(address, *this);
    writer_.startArray(1 + shapes_.length(position_));
    if (const auto shape = shapes_.number(position_))
        writer_.append(quint64(*shape));
    else
        _writeShape(type);
    pending_.write(writer_);
    writer_.endArray();
    if (output_.hasFailed())
        _fail(output_.errorString());
}

void KeyedArchiver::_writeShape(const Class &type)
{
    shapes_.addShape(position_);
    const std::vector<ShapeTrie::Key> keys = shapes_.keys(position_);
    QSet<QLatin1String> names;
    writer_.startArray(1 + keys.size());
    writer_.append(QStringView(type.name));
    for (const auto &key : keys) {
        if (names.contains(key.name))
            _fail(QStringLiteral("the key \"%1\" is written twice").arg(key.name));
        names.insert(key.name);
        if (key.isInteger)
            writer_.startArray(1);
        writer_.append(key.name);
        if (key.isInteger)
            writer_.endArray();
    }
    writer_.endArray();
}

void KeyedArchiver::_writeDigest()
{
    writer_.append(output_.digest());
    writer_.endArray();
    if (!output_.flush())
        _fail(output_.errorString());
}

void KeyedArchiver::_fail(const QString &reason)
{
    if (errorString_.isNull())
        errorString_ = reason.isEmpty() ? QStringLiteral("the device cannot be written") : reason;
}

void KeyedArchiver::_step(QLatin1String key, bool isInteger)
{
    position_ = shapes_.step(position_, {key, isInteger});
}

void KeyedArchiver::_addString(const QString &text)
{
    constexpr qsizetype minLongSize = 1024;
    const bool isLong = text.size() >= minLongSize;
    if (isLong && longStrings_.contains(text.constData())) {
        pending_.add(Kind::String, longStrings_.value(text.constData()));
        return;
    }
    const auto [index, isNew] = findOrInsert(sharedStrings_, text, sharedCount_);
    if (isNew) {
        if (isLong)
            longStrings_.insert(text.constData(), index);
        ++sharedCount_;
        pending_.addText(text);
    } else {
        pending_.add(Kind::String, index);
    }
}

void KeyedArchiver::_addDate(const QDateTime &date)
{
    const qint64 milliseconds = date.toMSecsSinceEpoch();
    const auto [index, isNew] = findOrInsert(sharedDates_, milliseconds, sharedCount_);
    if (isNew) {
        ++sharedCount_;
        pending_.addDate(milliseconds);
    } else {
        pending_.add(Kind::Date, index);
    }
}

void KeyedArchiver::encodeBoolean(QLatin1String key, bool value)
{
    _step(key, false);
    pending_.add(value ? Kind::True : Kind::False);
}

void KeyedArchiver::encodeString(QLatin1String key, const QString &value)
{
    _step(key, false);
    if (value.isNull())
        pending_.add(Kind::Absent);
    else
        _addString(value);
}

void KeyedArchiver::encodeDate(QLatin1String key, const QDateTime &value)
{
    _step(key, false);
    if (value.isNull())
        pending_.add(Kind::Absent);
    else
        _addDate(value);
}

void KeyedArchiver::encodeReference(QLatin1String key, std::optional<ArchiveReference> value)
{
    _step(key, false);
    if (value)
        pending_.add(Kind::Object, value->index);
    else
        pending_.add(Kind::Absent);
}

void KeyedArchiver::encodeReferences(QLatin1String key, std::span<const ArchiveReference> list)
{
    _step(key, false);
    pending_.openContainer(Kind::List, list.size());
    for (const ArchiveReference reference : list)
        pending_.add(Kind::Object, reference.index);
}

void KeyedArchiver::encodeValue(QLatin1String key, const ArchiveValue &value)
{
    _step(key, false);
    _addValue(value, 0);
}

// Adds one value of any kind; recursion is safe because the depth is limited.
class KeyedArchiver::ValueAdder
{
public:
    ValueAdder(KeyedArchiver &archiver, int depth)
        : archiver_(archiver)
        , pending_(archiver.pending_)
        , depth_(depth)
    {}

    void operator()(std::monostate) { pending_.add(Kind::Absent); }
    void operator()(ArchiveNull) { pending_.add(Kind::Null); }
    void operator()(bool value) { pending_.add(value ? Kind::True : Kind::False); }
    void operator()(const ArchiveNumber &number)
    {
        pending_.add(PackedValues::numberKind(number.width, number.isSigned), number.bits);
    }
    void operator()(const QString &text) { archiver_._addString(text); }
    void operator()(const QByteArray &bytes) { pending_.addData(bytes); }
    void operator()(const QDateTime &date) { archiver_._addDate(date); }
    void operator()(ArchiveReference object) { pending_.add(Kind::Object, object.index); }
    void operator()(const ArchiveList &list)
    {
        if (isTooDeep())
            return;
        pending_.openContainer(Kind::List, list.size());
        for (const ArchiveValue &value : list)
            archiver_._addValue(value, depth_ + 1);
    }
    void operator()(const ArchiveDictionary &dictionary)
    {
        if (isTooDeep())
            return;
        pending_.openContainer(Kind::Dictionary, 2 * dictionary.size());
        for (const ArchiveMember &member : dictionary) {
            archiver_._addString(member.key);
            archiver_._addValue(member.value, depth_ + 1);
        }
    }

private:
    bool isTooDeep()
    {
        if (depth_ < ArchiveFormat::maxNesting)
            return false;
        archiver_._fail(QStringLiteral("lists are nested too deeply"));
        pending_.add(Kind::Absent);
        return true;
    }

    KeyedArchiver &archiver_;
    PendingObject &pending_;
    int depth_; // number of lists and dictionaries around the value
};

void KeyedArchiver::_addValue(const ArchiveValue &value, int depth)
{
    std::visit(ValueAdder(*this, depth), static_cast<const ArchiveValue::variant &>(value));
}
