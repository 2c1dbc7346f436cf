// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayView>
#include <QString>
#include <vector>

// Reads CBOR item by item from memory. The bytes are untrusted; where they are not well-formed,
// reading ends with an error.
class CborReader
{
public:
    enum class Type : quint8 {
        None, // the end of the array or map, or an error
        Unsigned,
        Negative,
        Bytes,
        Text,
        Array,
        Map,
        Tag,
        Simple,
        Half,
        Float,
        Double,
    };
    enum SimpleValue : quint8 { False = 20, True, Null, Undefined };

    // The bytes must outlive the reader.
    explicit CborReader(QByteArrayView bytes);

    Type type() const { return type_; }
    bool hasNext() const { return type_ != Type::None; } // in the array or map that was entered
    qsizetype offset() const { return at_ - begin_; }    // of the current item

    // An unsigned integer, -1 minus a negative one, a tag or a simple value.
    quint64 argument() const { return argument_; }
    double toDouble() const; // an integer or a floating-point number

    // Each moves past the item; false on an error and where the item is of another type.
    bool next(); // not for text, bytes, arrays and maps
    bool enter();
    bool leave(); // the array or map, at its end
    bool readText(QString &text);
    bool readBytes(QByteArray &bytes);

private:
    struct Container
    {
        quint64 left; // items, including the current one
        bool isIndefinite;
    };

    void parseHead();
    void parseSimple(quint8 info);
    bool readArgument(quint8 info);
    bool finishItem();
    template<class Text, class Convert>
    bool readPieces(Type type, Text &whole, Convert convert);
    bool readPiece(Type type, QByteArrayView &piece);
    bool fail();

    const quint8 *begin_;
    const quint8 *at_;    // start of the item
    const quint8 *after_; // end of its head
    const quint8 *end_;
    quint64 argument_ = 0;
    Container open_{1, false};
    std::vector<Container> around_;
    Type type_ = Type::None;
    bool isIndefinite_ = false; // the item
    bool hasError_ = false;
};
