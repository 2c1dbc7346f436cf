// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/Check.h"

#include <QAbstractTableModel>
#include <memory>

class DocumentFindings;
struct EntryPlace;
class TavDataStore;

// The findings of a document as rows, the worst first.
class FindingsModel : public QAbstractTableModel
{
    Q_OBJECT
public:
    enum Column { SeverityColumn, TitleColumn, ObjectColumn, DetailColumn, PathColumn, columns };

    FindingsModel(const DocumentFindings &findings, std::shared_ptr<TavDataStore> store);

    const Finding &finding(int row) const { return rows_[static_cast<std::size_t>(row)].finding; }
    static QString word(Severity severity);
    QString plainText(int row) const; // lines, for the clipboard
    bool isHidden(int row) const { return rows_[static_cast<std::size_t>(row)].isHidden; }
    bool showsHidden() const { return showsHidden_; }
    void setShowsHidden(bool shows);
    int rowOf(const Finding &finding) const; // -1: none

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row
    {
        Finding finding;
        bool isHidden; // the user does not want to see it
    };
    std::vector<Row> currentRows() const;
    void reload();
    void updatePlaces();
    EntryPlace placeOf(const Row &row) const; // as it is now

    const DocumentFindings &findings_;
    std::shared_ptr<TavDataStore> store_;
    std::vector<Row> rows_;
    bool showsHidden_ = false;
};
