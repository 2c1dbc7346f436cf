// SPDX-License-Identifier: Apache-2.0
#include "cli/CommandOutput.h"

#include "cli/CommandError.h"
#include "display/export/EscapedText.h"
#include "store/TavDataStore.h"

#include <QCoreApplication>
#include <QIODevice>

namespace {
using L1 = QLatin1String;

L1 colorOf(TextRole role)
{
    switch (role) {
    case TextRole::Plain:
        break;
    case TextRole::Name:
        return L1("\x1b[1m");
    case TextRole::Detail:
        return L1("\x1b[2m");
    case TextRole::Key:
        return L1("\x1b[36m");
    case TextRole::Match:
        return L1("\x1b[1;33m");
    case TextRole::New:
        return L1("\x1b[32m");
    case TextRole::Gone:
        return L1("\x1b[31m");
    case TextRole::Changed:
        return L1("\x1b[33m");
    }
    return {};
}
} // namespace

CommandOutput::CommandOutput(QIODevice &device, const Terminal &terminal, Format format,
                             QString command)
    : device_(device)
    , terminal_(terminal)
    , format_(format)
    , command_(std::move(command))
    , text_(device)
    , json_(device)
{}

CommandOutput::~CommandOutput() = default;

void CommandOutput::add(const QString &text, TextRole role)
{
    const L1 color = terminal_.hasColors ? colorOf(role) : L1();
    text_.add(color);
    text_.add(escapedText(text));
    if (!color.isEmpty())
        text_.add(L1("\x1b[0m"));
}

void CommandOutput::addTrusted(QStringView text)
{
    text_.add(text);
}

void CommandOutput::addSpaces(qsizetype count)
{
    text_.addSpaces(count);
}

void CommandOutput::endLine()
{
    text_.add('\n');
}

void CommandOutput::describe(const TavDataStore &store)
{
    host_ = store.hostName();
}

void CommandOutput::beginDocument()
{
    if (std::exchange(hasBegun_, true) || format_ != Format::Json)
        return;
    json_.beginObject();
    json_.member(L1("format"), QStringLiteral("vandrel-cli"));
    json_.numberMember(L1("version"), jsonVersion);
    json_.member(L1("command"), command_);
    json_.member(L1("host"), host_);
    json_.key(L1("results"));
    json_.beginArray();
}

void CommandOutput::addResult(const std::function<void(JsonWriter &)> &members)
{
    beginDocument();
    if (format_ == Format::Json)
        json_.startLine();
    json_.beginObject();
    members(json_);
    json_.endObject();
    if (format_ == Format::JsonLines)
        json_.endDocument();
}

void CommandOutput::addCount(quint64 count)
{
    if (isText()) {
        text_.addNumber(count);
        return endLine();
    }
    addResult([&](JsonWriter &json) { json.numberMember(L1("count"), count); });
}

void CommandOutput::flush()
{
    const bool isWritten = isText() ? text_.finish() : json_.finish();
    if (!isWritten)
        throw CommandError{QCoreApplication::translate("CommandOutput", "The output failed: %1")
                               .arg(device_.errorString())};
}

void CommandOutput::finish()
{
    if (format_ == Format::Json && !isBare_) {
        beginDocument();
        json_.startLine();
        json_.endArray();
        json_.endObject();
        json_.endDocument();
    }
    flush();
}
