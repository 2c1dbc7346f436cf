#pragma once

#include "platform/archive/ArchiveItems.h"

class QCborStreamWriter;

// The values of one object until all its keys are known and it can be written.
class ArchiveRecord
{
public:
    void clear();
    void add(ArchiveItemKind kind, quint64 payload = 0) { items_.add(kind, payload); }
    void addText(const QString &text); // one that was not written before
    void addDate(qint64 milliseconds); // likewise
    void addData(const QByteArray &bytes);
    // The items that follow are its elements: values, or keys and values in turn.
    void openContainer(ArchiveItemKind kind, std::size_t elements) { items_.add(kind, elements); }

    void write(QCborStreamWriter &writer) const;

private:
    struct Container
    {
        ArchiveItemKind kind;
        quint64 left; // elements still to come
    };

    void writeItem(QCborStreamWriter &writer, std::size_t item) const;

    ArchiveItems items_;
    std::vector<QString> texts_;
    std::vector<qint64> dates_;
    std::vector<QByteArray> data_;
};
