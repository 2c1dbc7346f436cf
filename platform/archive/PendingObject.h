// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/archive/PackedValues.h"

class QCborStreamWriter;

// Collects an object's values until all its keys are known and it can be written.
class PendingObject
{
public:
    void clear();
    void add(PackedKind kind, quint64 payload = 0) { items_.add(kind, payload); }
    void addText(const QString &text); // not written before
    void addDate(qint64 milliseconds); // not written before
    void addData(const QByteArray &bytes);
    // The values added next are its elements: values, or alternating keys and values.
    void openContainer(PackedKind kind, std::size_t elements) { items_.add(kind, elements); }

    void write(QCborStreamWriter &writer) const;

private:
    struct Container
    {
        PackedKind kind;
        quint64 left; // elements
    };

    void writeItem(QCborStreamWriter &writer, std::size_t item) const;

    PackedValues items_;
    std::vector<QString> texts_;
    std::vector<qint64> dates_;
    std::vector<QByteArray> data_;
};
