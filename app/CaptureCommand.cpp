// SPDX-License-Identifier: Apache-2.0
#include "app/CaptureCommand.h"

#include "app/TavApplicationDelegate.h"
#include "cli/SnapshotCapture.h"
#include "store/TavDataStore.h"

#include <cstdio>

namespace {
CaptureCommand::ExitCode fail(CaptureCommand::ExitCode code, const QString &message)
{
    std::fprintf(stderr, "vandrel: %s\n", qUtf8Printable(message));
    return code;
}
} // namespace

CaptureCommand::ExitCode CaptureCommand::run(const CommandLine &line)
{
    QString error;
    const auto service = TavApplicationDelegate::openRegistry(line, &error);
    if (!service)
        return fail(NoRegistry, error);
    const auto store = TavDataStore::captureOnce(*service);
    if (!store || !store->registryRoot())
        return fail(NoRegistry, CaptureCommand::tr("The registry cannot be read."));
    if (const QString problem = SnapshotCapture::write(*store, line.captureFile); !problem.isNull())
        return fail(NotWritten, problem);
    const QString incompleteness = SnapshotCapture::incompleteness(*store);
    return incompleteness.isNull() ? Done : fail(Incomplete, incompleteness);
}
