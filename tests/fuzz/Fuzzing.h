#pragma once

#include <QByteArray>

// What the engine calls with bytes it made up.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size);

inline QByteArray fuzzedBytes(const quint8 *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

// What holds of every input; the engine keeps one that breaks it.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}
