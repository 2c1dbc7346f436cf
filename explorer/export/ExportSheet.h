// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/export/ExportRequest.h"
#include "explorer/sheets/Sheet.h"

class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;

// Asks what to export and how. Remembers the answers while its window is open.
class ExportSheet : public Sheet
{
    Q_OBJECT
public:
    enum class Purpose : quint8 { File, Printer };

    explicit ExportSheet(QWidget &window);

    void open(Purpose purpose, bool hasSelection, bool hasFound);
    void setKeys(const QStringList &keys); // that a table can have as columns

Q_SIGNALS:
    void requested(const ExportRequest &request, ExportSheet::Purpose purpose);
    void keysNeeded(ExportRequest::Scope scope);

private:
    void report() override;
    ExportRequest::Scope scope() const;
    ExportRequest::Format format() const;
    void showColumns();
    void addColumn(const QString &title, const QVariant &column, bool isChosen);
    void filterColumns(const QString &text);
    CsvExport::Columns columns() const;

    QButtonGroup *scopes_;
    QButtonGroup *formats_;
    QGroupBox *formatBox_;
    QGroupBox *columnsBox_;
    QListWidget *columnsList_;
    QLineEdit *columnsFilter_;
    QCheckBox *redactedCheckbox_;
    Purpose purpose_ = Purpose::File;
    QSet<QString> chosenKeys_;
};
