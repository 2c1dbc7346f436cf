#pragma once

#include <QByteArrayView>
#include <QString>

// A single-byte text encoding: ASCII below, Western letters and signs in the upper half.
// Every byte stands for a character.
class KelRoman
{
public:
    static QString decode(QByteArrayView bytes);
};
