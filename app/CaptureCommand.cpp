// SPDX-License-Identifier: Apache-2.0
#include "app/CaptureCommand.h"

#include "app/TavApplicationDelegate.h"
#include "platform/documents/DocumentFile.h"
#include "store/DataStoreEncoder.h"

#include <QFile>
#include <cstdio>
#include <unistd.h>

namespace {
CaptureCommand::ExitCode fail(CaptureCommand::ExitCode code, const QString &message)
{
    std::fprintf(stderr, "vandrel: %s\n", qUtf8Printable(message));
    return code;
}

// The reason of a failure, else null.
QString writeToStandardOutput(const TavDataStore &store)
{
    if (isatty(STDOUT_FILENO))
        return CaptureCommand::tr("Standard output is a terminal; a snapshot is not text.");
    QFile output;
    if (!output.open(stdout, QIODevice::WriteOnly))
        return output.errorString();
    const QString problem = DataStoreEncoder::encode(store, output);
    if (!problem.isNull())
        return problem;
    return output.flush() ? QString() : output.errorString();
}

QString writeToFile(const TavDataStore &store, const QString &file)
{
    DocumentError error;
    const auto content = [&](QIODevice &device, DocumentError &problem) {
        problem.reason = DataStoreEncoder::encode(store, device);
        return problem.reason.isNull();
    };
    if (DocumentFile::write(file, content, error))
        return {};
    return QStringLiteral("%1: %2").arg(file, error.reason);
}
} // namespace

CaptureCommand::ExitCode CaptureCommand::run(const CommandLine &line)
{
    QString error;
    const auto service = TavApplicationDelegate::openRegistry(line, &error);
    if (!service)
        return fail(NoRegistry, error);
    const auto store = TavDataStore::initFromDxRegistry(*service);
    if (!store || !store->registryRoot())
        return fail(NoRegistry, CaptureCommand::tr("The registry cannot be read."));
    store->lookUpDeviceNamesNow(); // another machine may not know them
    const QString problem = line.captureFile == QLatin1String("-")
                                ? writeToStandardOutput(*store)
                                : writeToFile(*store, line.captureFile);
    if (!problem.isNull())
        return fail(NotWritten, problem);
    const QStringList silent = store->incompleteObjects();
    return silent.isEmpty()
               ? Done
               : fail(Incomplete, CaptureCommand::tr(
                                      "The snapshot is not whole. These devices did not answer: %1")
                                      .arg(silent.join(QLatin1String(", "))));
}
