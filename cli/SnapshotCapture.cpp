// SPDX-License-Identifier: Apache-2.0
#include "cli/SnapshotCapture.h"

#include "platform/documents/DocumentFile.h"
#include "store/DataStoreEncoder.h"
#include "store/TavDataStore.h"
#include "store/redaction/RedactedStore.h"

#include <QFile>
#include <cstdio>
#include <unistd.h>

namespace {
QString writeToStandardOutput(const TavDataStore &store)
{
    if (isatty(STDOUT_FILENO) == 1)
        return SnapshotCapture::tr("Standard output is a terminal; a snapshot is not text.");
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

QString writeStore(const TavDataStore &store, const QString &file)
{
    return file == QLatin1String("-") ? writeToStandardOutput(store) : writeToFile(store, file);
}
} // namespace

QString SnapshotCapture::write(TavDataStore &store, const QString &file, bool isRedacted)
{
    store.lookUpDeviceNamesNow(); // another machine may not know them
    if (!isRedacted)
        return writeStore(store, file);
    const RedactedStore copy(store, [](double) {});
    return writeStore(copy.store(), file);
}

QString SnapshotCapture::incompleteness(const TavDataStore &store)
{
    const QStringList silent = store.incompleteObjects();
    return silent.isEmpty() ? QString()
                            : tr("The snapshot is not whole. These devices did not answer: %1")
                                  .arg(silent.join(QLatin1String(", ")));
}
