// SPDX-License-Identifier: Apache-2.0
#include "display/export/Utf8Output.h"

#include <QIODevice>
#include <charconv>
#include <cstring>

namespace {
constexpr qsizetype blockSize = 64 * 1024;
constexpr qsizetype bytesPerUnit = 3; // of UTF-16, at most
constexpr qsizetype digitsOfNumber = 20;

bool isPlainJson(char16_t unit)
{
    return unit >= 0x20 && unit < 0x7F && unit != u'"' && unit != u'\\';
}
} // namespace

Utf8Output::Utf8Output(QIODevice &device)
    : device_(device)
    , buffer_(blockSize, Qt::Uninitialized)
{}

// The place for the next bytes.
char *Utf8Output::room(qsizetype bytes)
{
    if (used_ + bytes > buffer_.size()) {
        flush();
        if (bytes > buffer_.size())
            buffer_.resize(bytes);
    }
    return buffer_.data() + used_;
}

void Utf8Output::flush()
{
    if (used_ > 0 && device_.write(buffer_.constData(), used_) != used_)
        hasFailed_ = true;
    used_ = 0;
}

void Utf8Output::add(QStringView text)
{
    if (text.isEmpty())
        return;
    char *const to = room(bytesPerUnit * text.size());
    qsizetype ascii = 0;
    while (ascii < text.size() && text[ascii].unicode() < 0x80) {
        to[ascii] = static_cast<char>(text[ascii].unicode());
        ++ascii;
    }
    used_ += ascii;
    if (ascii < text.size())
        add(QByteArrayView(text.sliced(ascii).toUtf8()));
}

void Utf8Output::add(QByteArrayView utf8)
{
    if (utf8.isEmpty())
        return;
    std::memcpy(room(utf8.size()), utf8.data(), static_cast<std::size_t>(utf8.size()));
    used_ += utf8.size();
}

void Utf8Output::add(char ascii)
{
    *room(1) = ascii;
    ++used_;
}

void Utf8Output::addSpaces(qsizetype count)
{
    std::memset(room(count), ' ', static_cast<std::size_t>(count));
    used_ += count;
}

void Utf8Output::addNumber(quint64 number)
{
    char *const to = room(digitsOfNumber);
    used_ += std::to_chars(to, to + digitsOfNumber, number).ptr - to;
}

void Utf8Output::addNumber(qint64 number)
{
    char *const to = room(digitsOfNumber);
    used_ += std::to_chars(to, to + digitsOfNumber, number).ptr - to;
}

void Utf8Output::addJson(QStringView text)
{
    add('"');
    for (qsizetype start = 0; start < text.size();) {
        qsizetype end = start;
        while (end < text.size() && isPlainJson(text[end].unicode()))
            ++end;
        add(text.sliced(start, end - start));
        while (end < text.size() && !isPlainJson(text[end].unicode()))
            addJsonEscape(text[end++].unicode());
        start = end;
    }
    add('"');
}

// All that is not ASCII is escaped too, so that unpaired surrogates survive.
void Utf8Output::addJsonEscape(char16_t unit)
{
    static constexpr char digits[] = "0123456789abcdef";
    if (unit == u'"' || unit == u'\\') {
        add('\\');
        add(static_cast<char>(unit));
        return;
    }
    const char escape[] = {'\\',
                           'u',
                           digits[unit >> 12],
                           digits[unit >> 8 & 15],
                           digits[unit >> 4 & 15],
                           digits[unit & 15]};
    add(QByteArrayView(escape, sizeof escape));
}

bool Utf8Output::finish()
{
    flush();
    return !hasFailed_;
}
