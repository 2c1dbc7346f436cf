// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCompleter>
#include <QDateTime>
#include <memory>

class QLineEdit;
class QListView;
class QStringListModel;
class TavDataStore;

// Offers the keys that occur, and the words of the language, for the word at the cursor of a field
// with a filter expression.
class FilterCompleter : public QCompleter
{
    Q_OBJECT
public:
    FilterCompleter(QLineEdit &field, std::shared_ptr<const TavDataStore> dataStore);

    void setOn(bool on);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool handleKey(int key);
    void offer();
    void refreshWords();
    void insert(const QString &word);
    QString wordAtCursor() const; // its part before the cursor; empty in quotes

    QLineEdit &field_;
    std::shared_ptr<const TavDataStore> dataStore_;
    QStringListModel *model_;
    QListView *list_;     // the completer owns it
    QDateTime wordsAsOf_; // of the store's update
    bool isOn_ = false;
};
