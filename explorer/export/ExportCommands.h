// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/export/ExportSheet.h"

class EntrySelection;
class FindSession;
class QPrinter;
class TavDataStore;
class TavDocument;

// Takes entries out of the registry: onto the clipboard, into a file, onto paper.
class ExportCommands : public QObject
{
    Q_OBJECT
public:
    // All must outlive this.
    ExportCommands(QWidget &window, std::shared_ptr<TavDataStore> dataStore,
                   const EntrySelection &selection, const FindSession &session);
    ~ExportCommands() override;

    void copyEntryAsText() const;
    void copyEntryAsJson() const;
    void exportEntries(); // asks what and where
    void print();         // likewise
    // Asks for the file. The document stays what it is.
    void saveRedactedCopy(const TavDocument &document);
    void saveRedactedCopyAs(const TavDocument &document, const QString &file);

    // Replaces the file.
    void write(const ExportRequest &request, const QString &file);
    void writeRedactedCopy(const QString &file);

private:
    using Chosen = std::function<void(const QString &)>;

    void openSheet(ExportSheet::Purpose purpose);
    void perform(const ExportRequest &request, ExportSheet::Purpose purpose);
    void askForFile(const QString &title, const QString &kind, const QString &name,
                    const Chosen &chosen);
    void askForPrinter(const ExportRequest &request);
    void printOn(QPrinter &printer, const ExportRequest &request);
    ExportedEntries entries(ExportRequest::Scope scope) const;
    // On another thread. False when the user cancelled or the device failed.
    bool run(const QString &title, const ExportRequest &request, QIODevice &device);
    QString suggestedName(bool isRedacted) const; // of a file, without extension
    void report(const QString &message, const QString &details) const;

    QWidget &window_;
    std::shared_ptr<TavDataStore> dataStore_;
    const EntrySelection &selection_;
    const FindSession &session_;
    std::unique_ptr<ExportSheet> sheet_;
};
