// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/CaptureCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/RegistrySource.h"
#include "cli/SnapshotCapture.h"

#include <cstdio>

CommandDescription CaptureCommand::description() const
{
    return {
        .name = QStringLiteral("capture"),
        .arguments = QStringLiteral("FILE"),
        .argumentKind = ArgumentKind::File,
        .minArguments = 1,
        .maxArguments = 1,
        .summary = tr("Write a snapshot of the registry"),
        .details = tr("To standard output for \"-\". An existing file is replaced completely or "
                      "left as it was. The exit code is 1 when some devices did not answer: "
                      "the snapshot is written without what they did not say."),
        .options = {{QStringLiteral("redact"),
                     {},
                     tr("Replace serial numbers, addresses and the host's name.")}},
        .examples = {{QStringLiteral("capture server.vandrel"), tr("A snapshot of this machine")},
                     {QStringLiteral("capture --redact - | gzip > report.vandrel.gz"),
                      tr("One to send to others")}},
        .isPaged = false};
}

ExitCode CaptureCommand::run(const CommandInput &input, RegistrySource &source,
                             CommandOutput &output)
{
    TavDataStore &store = source.store(RegistrySource::Need::Properties);
    output.describe(store);
    const QString file = input.arguments().constFirst();
    const QString problem = SnapshotCapture::write(store, file, input.isSet("redact"));
    if (!problem.isNull())
        throw CommandError{problem};
    const QString incompleteness = SnapshotCapture::incompleteness(store);
    if (!incompleteness.isNull())
        std::fprintf(stderr, "vandrel-cli: %s\n", qUtf8Printable(incompleteness));
    if (file == QLatin1String("-")) {
        output.leaveOutDocument();
    } else if (!output.isText()) {
        output.addResult([&](JsonWriter &json) {
            json.member(QLatin1String("file"), file);
            json.numberMember(QLatin1String("entries"), store.registryEntries().size());
            json.member(QLatin1String("incomplete"), store.incompleteObjects());
        });
    }
    return incompleteness.isNull() ? ExitCode::Found : ExitCode::Nothing;
}
