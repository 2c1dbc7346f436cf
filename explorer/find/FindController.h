// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/find/FindSession.h"

#include <QObject>
#include <array>

class EntrySelection;
class ExplorerContext;
class ExplorerViews;
class FilterMode;
class QCheckBox;
class QDockWidget;
class QMainWindow;
class QPushButton;
class QTableView;
class QToolButton;
class SearchField;
class Stepper;
class TavFindTableViewDataSource;
class ViewNote;

// Runs a window's searches: the field, the stepper, the drawer with its options, and the results.
class FindController : public QObject
{
    Q_OBJECT
public:
    // The window owns the controls. All must outlive this but the window, which goes before.
    FindController(QMainWindow &window, std::shared_ptr<TavDataStore> dataStore,
                   const ExplorerContext &context, EntrySelection &selection, ExplorerViews &views);
    ~FindController() override;

    const FindSession &session() const { return session_; }
    bool filterFindResults() const; // whether only what was found is to be shown
    bool hidesEverything() const;

    void beginFind();
    void find(); // what the field says
    void findWithString(const QString &text);
    void findAgain(); // among the entries as they are by now, showing nothing but the results
    void cancelSearch();
    void redisplay(); // the plane, or the state of the entries, may have changed

    void findStep();
    void findNextInPlane() { findNext(true, true, true); }
    void findPrevInPlane() { findNext(false, true, true); }
    void findNextInAnyPlane() { findNext(true, false, true); }
    void findPrevInAnyPlane() { findNext(false, false, true); }
    void findNext(bool forward, bool inPlane, bool mustAdvance);
    FindSession::Path nextFindPathInPlane(bool samePlane, bool mustAdvance) const;
    FindSession::Path prevFindPathInPlane(bool samePlane, bool mustAdvance) const;
    void updateStepper();

    void loadDefaultFindOptions();
    bool drawerIsOpen() const;
    void toggleFindOptionsDrawer();

    bool isFilterMode() const;
    void toggleFilterMode();
    bool canSaveFilter() const;
    void saveFilter();

    void windowWillClose(); // its drawer is hidden as it closes
    QTableView &results() const { return *findTableView_; }
    QWidget *field() const;
    QWidget *offerToFindMore() const; // beside the field for the tab key; mostly hidden

Q_SIGNALS:
    void shownEntriesChanged();                              // what is shown of them, or the drawer
    void contextMenuRequested(const QPoint &globalPosition); // of the selected entry

private:
    static constexpr FindOptions searchInProperties =
        FindOption::Keys | FindOption::Values | FindOption::ShownValues;

    void connectOutlets(QMainWindow &window);
    void setUpResults(QMainWindow &window, const ExplorerContext &context);
    void connectControls(QMainWindow &window);
    std::array<std::pair<FindOption, QCheckBox *>, 9> findCheckboxes() const;
    void searchPropertiesToo();
    void showWhetherAnythingMatches();
    void findFor(const FindQuery &query);
    void findObjectsMatching(const FindQuery &query);
    void show(const FindQuery &query, FindSession::Result result);
    void setOptions(FindOptions options);
    void enableControls();
    void filterModeChanged();
    void findOptionsChanged();
    void resetFindOptions();
    void filteredFindChanged();
    void toggleFindOptionsDrawerButtonClicked();
    void closeDrawer();
    TavRegistryEntryPath startingPath() const;

    QMainWindow &window_;
    std::shared_ptr<TavDataStore> dataStore_;
    EntrySelection &selection_;
    ExplorerViews &views_;
    FindSession session_;
    std::unique_ptr<TavFindTableViewDataSource> results_;
    SearchField *findField_ = nullptr;
    FilterMode *filterMode_ = nullptr;
    Stepper *findStepper_ = nullptr;
    QToolButton *findOptionsDrawerButton_ = nullptr;
    QDockWidget *findOptionsDrawer_ = nullptr;
    QCheckBox *filteredFindCheckbox_ = nullptr;
    QTableView *findTableView_ = nullptr;
    ViewNote *nothingFoundNote_ = nullptr;
    QPushButton *searchPropertiesButton_ = nullptr; // in the drawer
};
