// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/ValueFollower.h"
#include "display/views/PropertiesViewController.h"

#include <QHash>

class QMainWindow;
class ValuePreferences;

// The properties of a window's entry with their values of now, while the user wants to follow
// them, and which of them changed.
class FollowedValues : public QObject
{
    Q_OBJECT
public:
    FollowedValues(QMainWindow &window, std::shared_ptr<TavDataStore> store,
                   const ValuePreferences &preferences); // which must outlive this

    void updateActivity(); // the preferences, or whether the store is paused, may have changed
    // The tree to show for the entry: the store's, or one with later values.
    PropertyRef treeFor(const EntryRef &entry);
    // Which values differ between two trees of one entry; earlier changes are kept.
    void noteChanges(const TavRegistryProperty &older, const TavRegistryProperty &newer);
    void forgetChanges() { changes_.clear(); }
    std::optional<ValueChange> changeOf(const TavRegistryProperty &item) const;

Q_SIGNALS:
    void changed(); // the tree to show
    void tintsFaded();
    void attributeStopped(const QString &attribute); // it did not answer

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool mayFollow() const;
    void compare(const TavRegistryProperty &older, const TavRegistryProperty &newer,
                 QHash<const TavRegistryProperty *, ValueChange> &changes);

    QMainWindow &window_;
    std::shared_ptr<TavDataStore> store_;
    const ValuePreferences &preferences_;
    ValueFollower follower_;
    RegistryValue shown_; // the table of the tree
    PropertyRef tree_;
    QHash<const TavRegistryProperty *, ValueChange> changes_; // of nodes of the tree shown
    QTimer fading_;
};
