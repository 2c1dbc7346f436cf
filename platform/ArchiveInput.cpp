#include "platform/ArchiveInput.h"

using Reader = QCborStreamReader;

template<class Bytes>
bool ArchiveInput::readPieces(Bytes &whole, Reader::StringResult<Bytes> (Reader::*read)())
{
    while (true) {
        // The reader allocates what a piece claims to need before it looks for it.
        if (cbor.currentStringChunkSize() > size_ - cbor.currentOffset())
            return false;
        auto piece = (cbor.*read)();
        // Where the bytes end too early after a string, only the error tells.
        if (piece.status != Reader::Ok)
            return piece.status == Reader::EndOfString && cbor.lastError() == QCborError::NoError;
        if (whole.isNull())
            whole = std::move(piece.data);
        else
            whole += piece.data;
    }
}

bool ArchiveInput::next()
{
    return cbor.next() || fail("a value is damaged");
}

bool ArchiveInput::enter()
{
    return (cbor.isArray() && cbor.enterContainer()) || fail("a list is missing");
}

bool ArchiveInput::leave()
{
    return (!cbor.hasNext() && cbor.lastError() == QCborError::NoError && cbor.leaveContainer()) ||
           fail("a list is damaged");
}

bool ArchiveInput::readText(QString &text)
{
    if (!cbor.isString() || !readPieces(text, &Reader::readString))
        return fail("a text is missing or damaged");
    if (text.isNull())
        text = QLatin1String("");
    return true;
}

bool ArchiveInput::readBytes(QByteArray &bytes)
{
    if (!cbor.isByteArray() || !readPieces(bytes, &Reader::readByteArray))
        return fail("data is missing or damaged");
    if (bytes.isNull())
        bytes = "";
    return true;
}

bool ArchiveInput::fail(const char *reason)
{
    if (errorString_.isNull()) // the first reason is the nearest to the cause
        errorString_ = QStringLiteral("%1 at byte %2")
                           .arg(QLatin1String(reason), QString::number(cbor.currentOffset()));
    return false;
}
