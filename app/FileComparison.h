// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/comparison/ComparisonDocument.h"
#include "platform/desktop/DocumentCommands.h"

#include <QCoreApplication>

// Comparisons of snapshots in files, and of documents with them.
class FileComparison
{
    Q_DECLARE_TR_FUNCTIONS(FileComparison)
public:
    using Side = ComparisonDocument::Side;

    explicit FileComparison(TavDocumentController &documents)
        : documents_(documents)
    {}

    // Of the open document, or else of what is read from the file; without a store: it cannot be
    // read, or the user cancelled.
    Side sideOf(const QString &file, DocumentError &error);
    // Opens the comparison, the earlier side first. False: the user cancelled.
    bool open(Side one, Side other);
    // Lets the user choose two snapshots; fewer: none were chosen.
    static QStringList chooseFiles(QWidget *window = nullptr);

private:
    TavDocumentController &documents_;
};
