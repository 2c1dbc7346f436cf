#pragma once

#include "platform/archive/CborReader.h"

// The bytes of an archive, item by item, and what was found wrong with them. Each function that
// reads leads past what it read; false means that reading must end.
class ArchiveInput
{
public:
    explicit ArchiveInput(const QByteArray &bytes)
        : cbor(bytes)
    {}

    bool next() { return cbor.next() || fail("a value is damaged"); }
    bool enter();                      // an array
    bool leave();                      // an array or map; false when it has more elements
    bool readText(QString &text);      // never null
    bool readBytes(QByteArray &bytes); // likewise
    bool fail(const char *reason);     // always false

    const QString &errorString() const { return errorString_; }

    CborReader cbor;

private:
    QString errorString_;
};
