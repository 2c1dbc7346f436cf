// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>

// A pattern in which "*" stands for any text and "#" for digits.
class WildPattern
{
public:
    explicit WildPattern(QByteArray text);

    bool isPlain() const { return isPlain_; } // matches only itself
    const QByteArray &text() const { return text_; }
    bool matches(QByteArrayView text) const;

private:
    QByteArray text_;
    bool isPlain_;
};
