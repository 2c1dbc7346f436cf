// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/CborReader.h"

// A CBOR reader that keeps the first error as text. The reading functions hide those of the base:
// each moves past what it read; false means that parsing must end.
class CheckedCborReader : public CborReader
{
public:
    using CborReader::CborReader;

    bool next() { return CborReader::next() || fail("a value is damaged"); }
    bool enterArray();
    bool enterContainer();             // an array or map
    bool leave();                      // an array or map; false when it has more elements
    bool readText(QString &text);      // never null
    bool readBytes(QByteArray &bytes); // never null
    bool fail(const char *reason);     // always false

    const QString &errorString() const { return errorString_; }

private:
    QString errorString_;
};
