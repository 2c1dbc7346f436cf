#include "platform/ArchiveInput.h"

namespace {

template<class Bytes, class Read>
bool readPieces(Bytes &whole, Read read)
{
    auto piece = read();
    if (piece.status == QCborStreamReader::Ok) {
        whole = std::move(piece.data);
        piece = read();
    }
    while (piece.status == QCborStreamReader::Ok) {
        whole += piece.data;
        piece = read();
    }
    return piece.status == QCborStreamReader::EndOfString;
}

} // namespace

bool ArchiveInput::next()
{
    return cbor.next() || fail("a value is damaged");
}

bool ArchiveInput::enter()
{
    return (cbor.isContainer() && cbor.enterContainer()) || fail("a list is missing");
}

bool ArchiveInput::leave()
{
    return (!cbor.hasNext() && cbor.lastError() == QCborError::NoError && cbor.leaveContainer()) ||
           fail("a list is damaged");
}

bool ArchiveInput::readText(QString &text)
{
    if (!cbor.isString() || !readPieces(text, [this] { return cbor.readString(); }))
        return fail("a text is missing or damaged");
    if (text.isNull())
        text = QLatin1String("");
    return true;
}

bool ArchiveInput::readBytes(QByteArray &bytes)
{
    if (!cbor.isByteArray() || !readPieces(bytes, [this] { return cbor.readByteArray(); }))
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
