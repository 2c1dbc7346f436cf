// SPDX-License-Identifier: Apache-2.0
#include "model/RegistryValue.h"

#include <QHash>
#include <QSharedData>
#include <memory>
#include <utility>

// The members or elements follow in the same block.
struct alignas(RegistryValue::Member) RegistryValue::Payload : QSharedData
{
    quint32 count = 0;
    quint32 descendantCount = 0;

    template<class Item>
    Item *items()
    {
        return reinterpret_cast<Item *>(this + 1);
    }
    template<class Item>
    void destroy()
    {
        std::destroy_n(items<Item>(), count);
        this->~Payload();
        ::operator delete(this);
    }
};

RegistryValue::RegistryValue(const RegistryValue &other) noexcept
    : bits_(other.bits_)
    , size_(other.size_)
    , type_(other.type_)
    , width_(other.width_)
    , isSigned_(other.isSigned_)
    , notation_(other.notation_)
{
    retain();
}

RegistryValue::RegistryValue(RegistryValue &&other) noexcept
    : bits_(std::exchange(other.bits_, 0))
    , size_(std::exchange(other.size_, 0))
    , type_(std::exchange(other.type_, Type::None))
    , width_(other.width_)
    , isSigned_(other.isSigned_)
    , notation_(other.notation_)
{}

RegistryValue &RegistryValue::operator=(RegistryValue other) noexcept
{
    std::swap(bits_, other.bits_);
    std::swap(size_, other.size_);
    std::swap(type_, other.type_);
    std::swap(width_, other.width_);
    std::swap(isSigned_, other.isSigned_);
    std::swap(notation_, other.notation_);
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
    case Type::Array:
    case Type::Set:
        payload_->ref.ref();
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
        if (!payload_->ref.deref())
            payload_->destroy<Member>();
        break;
    case Type::Array:
    case Type::Set:
        if (!payload_->ref.deref())
            payload_->destroy<RegistryValue>();
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

template<class Item>
RegistryValue RegistryValue::collection(Type type, std::vector<Item> items)
{
    RegistryValue value(type);
    void *const block = ::operator new(sizeof(Payload) + items.size() * sizeof(Item));
    value.payload_ = new (block) Payload;
    value.payload_->ref.ref();
    value.payload_->count = static_cast<quint32>(items.size());
    for (const Item &item : items) {
        if constexpr (std::is_same_v<Item, Member>)
            value.payload_->descendantCount += 1 + item.value.descendantCount();
        else
            value.payload_->descendantCount += 1 + item.descendantCount();
    }
    std::uninitialized_move(items.begin(), items.end(), value.payload_->items<Item>());
    return value;
}

RegistryValue RegistryValue::dictionary(Members members)
{
    return collection(Type::Dictionary, std::move(members));
}

RegistryValue RegistryValue::array(Elements elements)
{
    return collection(Type::Array, std::move(elements));
}

RegistryValue RegistryValue::set(Elements members)
{
    return collection(Type::Set, std::move(members));
}

RegistryValue RegistryValue::string(QString text)
{
    RegistryValue value(Type::String);
    const auto parts = CompactString(std::move(text)).release();
    value.text_ = parts.header;
    value.size_ = parts.size;
    return value;
}

RegistryValue RegistryValue::number(quint64 bits, int width, bool isSigned, Notation notation)
{
    RegistryValue value(Type::Number);
    value.bits_ = width < 8 ? bits & ((quint64(1) << (8 * width)) - 1) : bits;
    value.width_ = static_cast<quint8>(width);
    value.isSigned_ = isSigned;
    value.notation_ = notation;
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

std::span<const RegistryValue::Member> RegistryValue::members() const
{
    if (type_ != Type::Dictionary)
        return {};
    return {payload_->items<Member>(), payload_->count};
}

void RegistryValue::prefetch(std::size_t index) const
{
    if (type_ == Type::String && text_) {
        __builtin_prefetch(CompactString::startOf(text_));
    } else if (isCollection()) {
        __builtin_prefetch(payload_);
        if (type_ == Type::Dictionary)
            __builtin_prefetch(payload_->items<Member>() + index);
        else
            __builtin_prefetch(payload_->items<RegistryValue>() + index);
    }
}

std::span<const RegistryValue> RegistryValue::elements() const
{
    if (type_ != Type::Array && type_ != Type::Set)
        return {};
    return {payload_->items<RegistryValue>(), payload_->count};
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
    return isCollection() ? payload_->descendantCount : 0;
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
        return a.payload_ == b.payload_ ||
               std::equal(a.members().begin(), a.members().end(), b.members().begin(),
                          b.members().end(), [](const auto &left, const auto &right) {
                              return left.key == right.key && left.value == right.value;
                          });
    case Type::Array:
    case Type::Set:
        return a.payload_ == b.payload_ || std::equal(a.elements().begin(), a.elements().end(),
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
    Members shared(members().begin(), members().end());
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
    case Type::Number: // the width does not matter
        return qHashMulti(seed, static_cast<int>(value.type_),
                          value.isSigned_ ? static_cast<quint64>(value.signedNumber())
                                          : value.bits_);
    default:
        return qHashMulti(seed, static_cast<int>(value.type_), value.bits_);
    }
}
