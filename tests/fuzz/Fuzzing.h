// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

// Called by the fuzzing engine.
extern "C" int LLVMFuzzerTestOneInput(const quint8 *data, std::size_t size);

inline QByteArray fuzzedBytes(const quint8 *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
}

// Checks a condition that holds for every input; the engine keeps inputs that break it.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}
