#include "model/RegistryValue.h"

#include <QHash>
#include <QSharedData>
#include <utility>

struct RegistryValue::DictionaryPayload : QSharedData
{
    Members members;
    quint32 descendantCount = 0;
};

struct RegistryValue::ListPayload : QSharedData
{
    Elements elements;
    quint32 descendantCount = 0;
};

RegistryValue::RegistryValue(const RegistryValue &other) noexcept
    : bits_(other.bits_)
    , size_(other.size_)
    , type_(other.type_)
    , width_(other.width_)
    , isSigned_(other.isSigned_)
{
    retain();
}

RegistryValue::RegistryValue(RegistryValue &&other) noexcept
    : bits_(std::exchange(other.bits_, 0))
    , size_(std::exchange(other.size_, 0))
    , type_(std::exchange(other.type_, Type::None))
    , width_(other.width_)
    , isSigned_(other.isSigned_)
{}

RegistryValue &RegistryValue::operator=(RegistryValue other) noexcept
{
    std::swap(bits_, other.bits_);
    std::swap(size_, other.size_);
    std::swap(type_, other.type_);
    std::swap(width_, other.width_);
    std::swap(isSigned_, other.isSigned_);
    return *this;
}

RegistryValue::~RegistryValue()
{
    release();
}

void RegistryValue::retain() const noexcept
{
    switch (type_) {
    case Type::Dictionary:
        dictionary_->ref.ref();
        break;
    case Type::Array:
    case Type::Set:
        list_->ref.ref();
        break;
    case Type::String:
        if (text_)
            text_->ref();
        break;
    case Type::Data:
        if (bytes_)
            bytes_->ref();
        break;
    default:
        break;
    }
}

void RegistryValue::release() noexcept
{
    switch (type_) {
    case Type::Dictionary:
        if (!dictionary_->ref.deref())
            delete dictionary_;
        break;
    case Type::Array:
    case Type::Set:
        if (!list_->ref.deref())
            delete list_;
        break;
    case Type::String:
        CompactString::adopt({text_, size_});
        break;
    case Type::Data:
        CompactBytes::adopt({bytes_, size_});
        break;
    default:
        break;
    }
}

RegistryValue RegistryValue::dictionary(Members members)
{
    RegistryValue value(Type::Dictionary);
    value.dictionary_ = new DictionaryPayload;
    value.dictionary_->ref.ref();
    quint32 count = 0;
    for (const Member &member : members)
        count += 1 + member.value.descendantCount();
    value.dictionary_->members = std::move(members);
    value.dictionary_->descendantCount = count;
    return value;
}

RegistryValue RegistryValue::list(Type type, Elements elements)
{
    RegistryValue value(type);
    value.list_ = new ListPayload;
    value.list_->ref.ref();
    quint32 count = 0;
    for (const RegistryValue &element : elements)
        count += 1 + element.descendantCount();
    value.list_->elements = std::move(elements);
    value.list_->descendantCount = count;
    return value;
}

RegistryValue RegistryValue::array(Elements elements)
{
    return list(Type::Array, std::move(elements));
}

RegistryValue RegistryValue::set(Elements members)
{
    return list(Type::Set, std::move(members));
}

RegistryValue RegistryValue::string(QString text)
{
    RegistryValue value(Type::String);
    const auto parts = CompactString(std::move(text)).release();
    value.text_ = parts.header;
    value.size_ = parts.size;
    return value;
}

RegistryValue RegistryValue::number(quint64 bits, int width, bool isSigned)
{
    RegistryValue value(Type::Number);
    value.bits_ = width < 8 ? bits & ((quint64(1) << (8 * width)) - 1) : bits;
    value.width_ = static_cast<quint8>(width);
    value.isSigned_ = isSigned;
    return value;
}

RegistryValue RegistryValue::boolean(bool truth)
{
    RegistryValue value(Type::Boolean);
    value.bits_ = truth;
    return value;
}

RegistryValue RegistryValue::data(QByteArray bytes)
{
    RegistryValue value(Type::Data);
    const auto parts = CompactBytes(std::move(bytes)).release();
    value.bytes_ = parts.header;
    value.size_ = parts.size;
    return value;
}

RegistryValue RegistryValue::date(const QDateTime &date)
{
    RegistryValue value(Type::Date);
    value.bits_ = static_cast<quint64>(date.toMSecsSinceEpoch());
    return value;
}

RegistryValue RegistryValue::null()
{
    return RegistryValue(Type::Null);
}

bool RegistryValue::isCollection() const
{
    return type_ == Type::Dictionary || type_ == Type::Array || type_ == Type::Set;
}

const RegistryValue::Members &RegistryValue::members() const
{
    static const Members none;
    return type_ == Type::Dictionary ? dictionary_->members : none;
}

std::span<const RegistryValue> RegistryValue::elements() const
{
    if (type_ != Type::Array && type_ != Type::Set)
        return {};
    return list_->elements;
}

QString RegistryValue::toString() const
{
    if (type_ != Type::String)
        return {};
    RegistryValue held(*this);
    return CompactString::adopt({std::exchange(held.text_, nullptr), held.size_}).toOwner();
}

quint64 RegistryValue::numberBits() const
{
    return type_ == Type::Number ? bits_ : 0;
}

qint64 RegistryValue::signedNumber() const
{
    const int unused = 64 - 8 * numberWidth();
    return type_ == Type::Number ? static_cast<qint64>(bits_ << unused) >> unused : 0;
}

int RegistryValue::compareNumbers(const RegistryValue &a, const RegistryValue &b)
{
    const auto compare = [](auto first, auto second) {
        return first < second ? -1 : second < first ? 1 : 0;
    };
    const bool isNegative = a.isSignedNumber() && a.signedNumber() < 0;
    const bool isOtherNegative = b.isSignedNumber() && b.signedNumber() < 0;
    if (isNegative != isOtherNegative)
        return isNegative ? -1 : 1;
    return isNegative ? compare(a.signedNumber(), b.signedNumber())
                      : compare(a.numberBits(), b.numberBits());
}

bool RegistryValue::meansTheSameAs(const RegistryValue &other) const
{
    return type_ == Type::Number && other.type_ == Type::Number ? compareNumbers(*this, other) == 0
                                                                : *this == other;
}

bool RegistryValue::toBoolean() const
{
    return type_ == Type::Boolean && bits_ != 0;
}

QByteArray RegistryValue::toData() const
{
    if (type_ != Type::Data)
        return {};
    RegistryValue held(*this);
    return CompactBytes::adopt({std::exchange(held.bytes_, nullptr), held.size_}).toOwner();
}

QDateTime RegistryValue::toDate() const
{
    if (type_ != Type::Date)
        return {};
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(bits_), Qt::UTC);
}

qsizetype RegistryValue::count() const
{
    return static_cast<qsizetype>(type_ == Type::Dictionary ? members().size() : elements().size());
}

quint32 RegistryValue::descendantCount() const
{
    switch (type_) {
    case Type::Dictionary:
        return dictionary_->descendantCount;
    case Type::Array:
    case Type::Set:
        return list_->descendantCount;
    default:
        return 0;
    }
}

const RegistryValue &RegistryValue::member(QStringView key) const
{
    static const RegistryValue none{};
    for (const Member &member : members()) {
        if (QStringView(member.key.data(), member.key.size()) == key)
            return member.value;
    }
    return none;
}

bool operator==(const RegistryValue &a, const RegistryValue &b)
{
    using Type = RegistryValue::Type;
    if (a.type_ != b.type_)
        return false;
    switch (a.type_) {
    case Type::Dictionary:
        return a.dictionary_ == b.dictionary_ ||
               std::equal(a.members().begin(), a.members().end(), b.members().begin(),
                          b.members().end(), [](const auto &left, const auto &right) {
                              return left.key == right.key && left.value == right.value;
                          });
    case Type::Array:
    case Type::Set:
        return a.list_ == b.list_ || std::equal(a.elements().begin(), a.elements().end(),
                                                b.elements().begin(), b.elements().end());
    case Type::String:
        return a.text_ == b.text_ ? a.size_ == b.size_ : a.stringView() == b.stringView();
    case Type::Data:
        return a.bytes_ == b.bytes_ ? a.size_ == b.size_ : a.toData() == b.toData();
    case Type::Number:
        return a.bits_ == b.bits_ && a.width_ == b.width_ && a.isSigned_ == b.isSigned_;
    default:
        return a.bits_ == b.bits_;
    }
}

bool RegistryValue::isSameCollectionAs(const RegistryValue &other) const
{
    return isCollection() && type_ == other.type_ && bits_ == other.bits_;
}

RegistryValue RegistryValue::sharingWith(const RegistryValue &earlier) const
{
    if (*this == earlier)
        return earlier;
    if (type_ != Type::Dictionary || earlier.type_ != Type::Dictionary)
        return *this;
    QHash<QStringView, const Member *> byKey;
    for (const Member &member : earlier.members())
        byKey.insert(QStringView(member.key.data(), member.key.size()), &member);
    Members shared = members();
    for (Member &member : shared) {
        const Member *const known =
            byKey.value(QStringView(member.key.data(), member.key.size()), nullptr);
        if (known)
            member = {known->key, member.value.sharingWith(known->value)};
    }
    return dictionary(std::move(shared));
}

size_t qHash(const RegistryValue &value, size_t seed)
{
    using Type = RegistryValue::Type;
    switch (value.type_) {
    case Type::String:
        return qHash(value.toString(), seed);
    case Type::Data:
        return qHash(value.toData(), seed);
    case Type::Dictionary:
    case Type::Array:
    case Type::Set:
        return qHashMulti(seed, static_cast<int>(value.type_), value.count());
    case Type::Number: // the width is no part of what it means
        return qHashMulti(seed, static_cast<int>(value.type_),
                          value.isSigned_ ? static_cast<quint64>(value.signedNumber())
                                          : value.bits_);
    default:
        return qHashMulti(seed, static_cast<int>(value.type_), value.bits_);
    }
}
