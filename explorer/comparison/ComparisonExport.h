// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

class ComparisonDocument;
class QIODevice;

// Writes a comparison into a file: as text, as JSON or as a page to attach to a report.
class ComparisonExport : public QObject
{
    Q_OBJECT
public:
    ComparisonExport(QWidget &window, const ComparisonDocument &document); // which own this

    void exportComparison(); // asks what and where
    // The format follows from the file's suffix: html, json, or else text. Replaces the file.
    void write(const QString &file, bool isRedacted);

private:
    bool writeTo(QIODevice &device, const QString &suffix, bool isRedacted) const;

    QWidget &window_;
    const ComparisonDocument &document_;
};
