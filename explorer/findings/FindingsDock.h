// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/Finding.h"
#include "explorer/findings/HiddenFindings.h"

#include <QDockWidget>
#include <memory>
#include <optional>

class DocumentFindings;
class FindingsModel;
class QLabel;
class QMenu;
class QSortFilterProxyModel;
class QTableView;
class QTextBrowser;
class QToolButton;
class SearchField;
class TavDataStore;

// What looks wrong, at the bottom of a window, with an explanation beside it.
class FindingsDock : public QDockWidget
{
    Q_OBJECT
public:
    FindingsDock(DocumentFindings &findings, std::shared_ptr<TavDataStore> store, QWidget *parent);
    ~FindingsDock() override;

Q_SIGNALS:
    void entryChosen(quint64 tag);
    void propertyChosen(quint64 tag, const QString &keyPath);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QWidget *makeBar();
    void setUpTable();
    void updateBar();
    void selectAgain();
    QMenu *makeMenu();
    QMenu *makeHidingMenu();
    void addHidingActions(QMenu &menu);
    HiddenFindings::Place placeOf(int row) const;
    int currentRow() const; // of the model; -1: none
    void choose();
    void explain();
    void copy();

    DocumentFindings &findings_;
    std::unique_ptr<FindingsModel> model_;
    QSortFilterProxyModel *shown_;
    QTableView *table_;
    QTextBrowser *explanation_;
    SearchField *filterField_;
    QToolButton *showHiddenButton_;
    QToolButton *measureButton_;
    QLabel *notes_;
    std::optional<Finding> selected_; // before the findings changed
};
