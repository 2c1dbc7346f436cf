// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDockWidget>
#include <memory>

class DocumentFindings;
class FindingsModel;
class QSortFilterProxyModel;
class QTableView;
class QTextBrowser;
class SearchField;
class TavDataStore;

// What looks wrong, at the bottom of a window, with an explanation beside it.
class FindingsDock : public QDockWidget
{
    Q_OBJECT
public:
    FindingsDock(const DocumentFindings &findings, std::shared_ptr<TavDataStore> store,
                 QWidget *parent);
    ~FindingsDock() override;

Q_SIGNALS:
    void entryChosen(quint64 tag);
    void propertyChosen(quint64 tag, const QString &keyPath);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeBar();
    void setUpTable();
    int currentRow() const; // of the model; -1: none
    void choose();
    void explain();
    void copy();

    std::unique_ptr<FindingsModel> model_;
    QSortFilterProxyModel *shown_;
    QTableView *table_;
    QTextBrowser *explanation_;
    SearchField *filterField_;
};
