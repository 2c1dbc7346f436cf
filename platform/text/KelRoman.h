// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArrayView>
#include <QString>

// A single-byte text encoding: ASCII, and Western letters and signs in the upper half. Every byte
// is a character.
class KelRoman
{
public:
    static QString decode(QByteArrayView bytes);
};
