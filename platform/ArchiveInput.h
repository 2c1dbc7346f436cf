#pragma once

#include <QCborStreamReader>

// The bytes of an archive, item by item, and what was found wrong with them. Each function that
// reads leads past what it read; false means that reading must end.
class ArchiveInput
{
public:
    explicit ArchiveInput(const QByteArray &bytes)
        : cbor(bytes)
        , size_(bytes.size())
    {}

    bool next();
    bool enter();                      // an array
    bool leave();                      // an array or map; false when it has more elements
    bool readText(QString &text);      // never null
    bool readBytes(QByteArray &bytes); // likewise
    bool fail(const char *reason);     // always false

    const QString &errorString() const { return errorString_; }

    QCborStreamReader cbor;

private:
    template<class Bytes>
    bool readPieces(Bytes &whole, QCborStreamReader::StringResult<Bytes> (QCborStreamReader::*)());

    qint64 size_;
    QString errorString_;
};
