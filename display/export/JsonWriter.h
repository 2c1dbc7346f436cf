// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/export/Utf8Output.h"

class QDateTime;
class RegistryValue;

// Writes JSON in ASCII, with the commas. Values of the registry are written without loss, as
// docs/export-json.md describes.
class JsonWriter
{
public:
    explicit JsonWriter(QIODevice &device)
        : output_(device)
    {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void startLine() { startsLine_ = true; } // for the next element or the next end
    void key(QStringView key);
    void key(QLatin1String key) { this->key(QString(key)); }

    void text(QStringView text);
    void number(quint64 number);
    void number(double number); // not infinite
    void flag(bool flag);
    void date(const QDateTime &date);
    void null();
    // Recursive: no deeper than a snapshot may hold.
    void value(const RegistryValue &value);

    // Members of an object. Null texts and dates are left out.
    void member(QLatin1String key, const QString &text);
    void member(QLatin1String key, const QStringList &texts);
    void member(QLatin1String key, const QDateTime &date);
    void flagMember(QLatin1String key, bool flag);
    void numberMember(QLatin1String key, quint64 number);

    void endDocument(); // another may follow
    bool finish() { return output_.finish(); }

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();
    void endsValue() { isFirst_ = false; }
    void numberValue(const RegistryValue &number);
    template<class Items>
    void values(const Items &items);

    Utf8Output output_;
    bool isFirst_ = true; // in the object or array, or directly after a key
    bool startsLine_ = false;
};
