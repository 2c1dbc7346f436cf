// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Terminal.h"
#include "display/export/JsonWriter.h"

#include <functional>
#include <memory>

class TavDataStore;

// What a part of a line is; the terminal's colours depend on it.
enum class TextRole : quint8 { Plain, Name, Detail, Key, Match, New, Gone, Changed };

// The results of a command: lines of text, or JSON objects. Text of the registry cannot control the
// terminal.
class CommandOutput
{
public:
    enum class Format : quint8 { Text, Json, JsonLines };
    static constexpr int jsonVersion = 1;
    static constexpr quint32 maxLevel = 60; // of text: what is deeper is indented no more

    CommandOutput(QIODevice &device, const Terminal &terminal, Format format, QString command);
    ~CommandOutput();

    bool isText() const { return format_ == Format::Text; }
    const Terminal &terminal() const { return terminal_; }
    QIODevice &device() { return device_; } // for what is written as it is; flush first

    // Text:
    void add(const QString &text, TextRole role = TextRole::Plain); // escaped
    void addTrusted(QStringView text);                              // of the program itself
    void addSpaces(qsizetype count);
    void endLine();

    // JSON: the facts of the whole come before the first result.
    void describe(const TavDataStore &store);
    void addResult(const std::function<void(JsonWriter &)> &members);
    void addCount(quint64 count);               // of results, instead of them
    void leaveOutDocument() { isBare_ = true; } // standard output has something else

    void flush();
    // Writes the rest. Throws CommandError if the device failed at any time.
    void finish();

private:
    void beginDocument();

    QIODevice &device_;
    Terminal terminal_;
    Format format_;
    QString command_;
    Utf8Output text_;
    JsonWriter json_;
    QString host_;
    bool hasBegun_ = false;
    bool isBare_ = false;
};
