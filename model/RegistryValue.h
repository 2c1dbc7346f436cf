// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/text/CompactArray.h"

#include <QDateTime>
#include <span>
#include <vector>

// A typed value of the registry, implicitly shared, in 16 bytes. Immutable: reader threads make
// values, the main thread reads them.
class RegistryValue
{
public:
    enum class Type : quint8 {
        None,
        Dictionary,
        Array,
        Set,
        String,
        Number,
        Boolean,
        Data,
        Date,
        Null,
    };

    // How the host wrote a number.
    enum class Notation : quint8 { Unknown, Decimal, Hexadecimal };

    struct Member;
    using Members = std::vector<Member>; // in the order the service gives
    using Elements = std::vector<RegistryValue>;

    RegistryValue() = default;
    RegistryValue(const RegistryValue &other) noexcept;
    RegistryValue(RegistryValue &&other) noexcept;
    RegistryValue &operator=(RegistryValue other) noexcept;
    ~RegistryValue();

    static RegistryValue dictionary(Members members);
    static RegistryValue array(Elements elements);
    static RegistryValue set(Elements members);
    static RegistryValue string(QString text);
    // Width is 1, 2, 4 or 8 bytes; higher bits are cut off. How it is shown is up to the display.
    static RegistryValue number(quint64 bits, int width, bool isSigned = false,
                                Notation notation = Notation::Unknown);
    static RegistryValue boolean(bool truth);
    static RegistryValue data(QByteArray bytes);
    static RegistryValue date(const QDateTime &date); // to the millisecond, UTC
    static RegistryValue null();

    Type type() const { return type_; }
    bool isNone() const { return type_ == Type::None; }
    bool isCollection() const;

    // For a value of another type: empty, zero or false.
    std::span<const Member> members() const;
    std::span<const RegistryValue> elements() const;
    QString toString() const;
    QStringView stringView() const // the same without a reference count
    {
        return type_ == Type::String && text_
                   ? QStringView(CompactString::startOf(text_), static_cast<qsizetype>(size_))
                   : QStringView();
    }
    QByteArrayView dataView() const // likewise
    {
        return type_ == Type::Data && bytes_
                   ? QByteArrayView(CompactBytes::startOf(bytes_), static_cast<qsizetype>(size_))
                   : QByteArrayView();
    }
    int numberWidth() const { return type_ == Type::Number ? width_ : 0; }
    quint64 numberBits() const;  // zero-extended
    qint64 signedNumber() const; // sign-extended from its width
    bool isSignedNumber() const { return type_ == Type::Number && isSigned_; }
    Notation notation() const { return notation_; } // does not matter for comparing
    // Negative, 0 or positive, by numeric value, whatever the widths and signs.
    static int compareNumbers(const RegistryValue &a, const RegistryValue &b);
    // Like ==, but numbers are compared by numeric value.
    bool meansTheSameAs(const RegistryValue &other) const;
    bool toBoolean() const;
    QByteArray toData() const;
    QDateTime toDate() const;

    qsizetype count() const; // members or elements; 0 for no collection
    // All values in this one, at any depth, without itself.
    quint32 descendantCount() const;
    // Fetches from memory, ahead of use, the text or the item at this place of a collection.
    void prefetch(std::size_t index) const;
    // The member of a dictionary, or none. Linear in the number of members.
    const RegistryValue &member(QStringView key) const;

    friend bool operator==(const RegistryValue &a, const RegistryValue &b);
    // Whether both share one collection in memory: equal without comparing.
    bool isSameCollectionAs(const RegistryValue &other) const;
    // An equal value that shares as much memory as possible with an earlier one.
    RegistryValue sharingWith(const RegistryValue &earlier) const;
    // Equal for values with isSameValue, too.
    friend size_t qHash(const RegistryValue &value, size_t seed);

private:
    struct Payload;

    explicit RegistryValue(Type type)
        : type_(type)
    {}
    template<class Item>
    static RegistryValue collection(Type type, std::vector<Item> items);
    void retain() const noexcept;
    void release() noexcept;

    // Number, boolean or time; for text or data the shared buffer; for a collection the payload.
    union
    {
        quint64 bits_ = 0;
        CompactString::Header *text_;
        CompactBytes::Header *bytes_;
        Payload *payload_;
    };
    quint32 size_ = 0; // of a text or data
    Type type_ = Type::None;
    quint8 width_ = 0; // of a number
    bool isSigned_ = false;
    Notation notation_ = Notation::Unknown;
};

size_t qHash(const RegistryValue &value, size_t seed = 0);

struct RegistryValue::Member
{
    CompactString key;
    RegistryValue value;
};

static_assert(sizeof(RegistryValue) == 16);
