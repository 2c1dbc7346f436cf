// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCoreApplication>

class TavDataStore;

// Writes a snapshot without a window.
class SnapshotCapture
{
    Q_DECLARE_TR_FUNCTIONS(SnapshotCapture)
public:
    // To a file, or to standard output for "-". An existing file is replaced completely or left as
    // it was. The reason of a failure, else null.
    static QString write(TavDataStore &store, const QString &file, bool isRedacted = false);
    // Says which devices did not answer; null: the snapshot is whole.
    static QString incompleteness(const TavDataStore &store);
};
