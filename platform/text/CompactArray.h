// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>
#include <utility>

// An implicitly shared QString or QByteArray in 12 bytes instead of 24, which leaves four bytes of
// tail to the class that holds it. It shares the owner's buffer, so conversion copies nothing. A
// large snapshot holds millions: each property has a key and most have a text.
// Deliberate: relies on Qt's array header, which is public but undocumented. A buffer of our own
// would copy each text that an archive shares between values; a box around the owner would cost
// one more allocation for each text.
template<class Owner>
class CompactArray
{
    using Pointer = typename Owner::DataPointer;
    using Element = std::remove_pointer_t<decltype(std::declval<Pointer>().data())>;

public:
    using Header = QTypedArrayData<Element>;
    struct Parts
    {
        Header *header;
        quint32 size;
    };

    CompactArray() = default;

    explicit CompactArray(Owner owner)
    {
        if (owner.isEmpty())
            return;
        if (!sharesWhole(owner))
            owner = Owner(owner.constData(), owner.size()); // a literal or a slice
        Pointer &pointer = owner.data_ptr();
        header_ = pointer.d_ptr();
        size_ = static_cast<quint32>(pointer.size);
        header_->ref();
    }

    CompactArray(const CompactArray &other) noexcept
        : header_(other.header_)
        , size_(other.size_)
    {
        if (header_)
            header_->ref();
    }
    CompactArray(CompactArray &&other) noexcept
        : header_(std::exchange(other.header_, nullptr))
        , size_(std::exchange(other.size_, 0))
    {}
    CompactArray &operator=(CompactArray other) noexcept
    {
        std::swap(header_, other.header_);
        std::swap(size_, other.size_);
        return *this;
    }
    ~CompactArray()
    {
        if (header_ && !header_->deref())
            Header::deallocate(header_);
    }

    // For a holder that packs both fields itself and then owns one reference.
    Parts release() && { return {std::exchange(header_, nullptr), std::exchange(size_, 0)}; }
    static CompactArray adopt(Parts parts)
    {
        CompactArray array;
        array.header_ = parts.header;
        array.size_ = parts.size;
        return array;
    }

    static Element *startOf(Header *header)
    {
        return Header::dataStart(header, alignof(typename Header::AlignmentDummy));
    }

    // Never null: an empty array gives an empty owner.
    Owner toOwner() const
    {
        if (!header_)
            return Owner(data(), 0);
        header_->ref();
        return Owner(Pointer(header_, start(), size_));
    }

    const typename Owner::value_type *data() const
    {
        static constexpr typename Owner::value_type empty{};
        return header_ ? reinterpret_cast<const typename Owner::value_type *>(start()) : &empty;
    }
    qsizetype size() const { return size_; }

    friend bool operator==(const CompactArray &a, const CompactArray &b)
    {
        return a.header_ == b.header_ ? a.size_ == b.size_
                                      : a.size_ == b.size_ && a.toOwner() == b.toOwner();
    }

private:
    static bool sharesWhole(Owner &owner)
    {
        Pointer &pointer = owner.data_ptr();
        return pointer.d_ptr() && pointer.data() == startOf(pointer.d_ptr());
    }
    Element *start() const { return startOf(header_); }

    Header *header_ = nullptr;
    quint32 size_ = 0;
};

using CompactString = CompactArray<QString>;
using CompactBytes = CompactArray<QByteArray>;
