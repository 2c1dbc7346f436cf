// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QString>

class QIODevice;

// Writes text to a device as UTF-8, a large block at a time.
class Utf8Output
{
public:
    explicit Utf8Output(QIODevice &device);
    Utf8Output(const Utf8Output &) = delete;
    Utf8Output &operator=(const Utf8Output &) = delete;

    void add(QStringView text);
    void add(QLatin1String ascii) { add(QByteArrayView(ascii.data(), ascii.size())); }
    void add(QByteArrayView utf8);
    void add(char ascii);
    void addSpaces(qsizetype count);
    void addNumber(quint64 number);
    void addNumber(qint64 number);
    void addJson(QStringView text); // quoted and escaped
    void addBase64(const QByteArray &bytes) { add(QByteArrayView(bytes.toBase64())); }

    bool finish(); // writes the rest; false if the device failed at any time

private:
    char *room(qsizetype bytes);
    void addJsonEscape(char16_t unit);
    void flush();

    QIODevice &device_;
    QByteArray buffer_;
    qsizetype used_ = 0;
    bool hasFailed_ = false;
};
