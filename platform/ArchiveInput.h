#pragma once

#include <QCborStreamReader>

// The bytes of an archive, item by item, and what was found wrong with them. Each function that
// reads leads past what it read; false means that reading must end.
class ArchiveInput
{
public:
    explicit ArchiveInput(const QByteArray &bytes)
        : cbor(bytes)
    {}

    bool next();
    bool enter();                      // an array or map
    bool leave();                      // false when it has more elements
    bool readText(QString &text);      // never null
    bool readBytes(QByteArray &bytes); // never null
    bool fail(const char *reason);     // always false

    const QString &errorString() const { return errorString_; }

    QCborStreamReader cbor;

private:
    QString errorString_;
};
