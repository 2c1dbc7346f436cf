// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/find/FindSession.h"

class FieldNote;
class FilterCompleter;
class QAction;
class QMainWindow;
class QMenu;
class SearchField;

// Whether a find field's text is searched for or is a filter expression. Explains expressions that
// are wrong, and offers those of before.
class FilterMode : public QObject
{
    Q_OBJECT
public:
    // The window owns it.
    FilterMode(QMainWindow &window, SearchField &field, std::shared_ptr<TavDataStore> dataStore);

    bool isOn() const { return isOn_; }
    void setOn(bool on);

    // What the field asks for. None for an expression that is wrong, which is explained.
    std::optional<FindQuery> query();
    void explainTakesLong();

    bool canSave() const; // a correct expression
    void save();          // under a name that it asks for

Q_SIGNALS:
    void modeChanged();
    void filterChosen(); // it is in the field

private:
    void setUpMenu();
    void fillMenu();
    void choose(const QString &expression);
    void followText();
    void noteUsed();
    void explain(const std::optional<FilterError> &error);

    QMainWindow &window_;
    SearchField &field_;
    FieldNote *note_;
    FilterCompleter *completer_;
    QMenu *menu_;
    QAction *button_ = nullptr; // at the left edge of the field
    bool isOn_ = false;
    bool isExplaining_ = false;
};
