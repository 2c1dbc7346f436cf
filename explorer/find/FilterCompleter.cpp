// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/FilterCompleter.h"

#include "store/TavDataStore.h"
#include "store/filter/FilterFields.h"
#include "store/filter/FilterTokenizer.h"
#include "store/filter/KeysOccurring.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QStringListModel>

namespace {
constexpr qsizetype minLetters = 2; // for which there is a list
} // namespace

FilterCompleter::FilterCompleter(QLineEdit &field, std::shared_ptr<const TavDataStore> dataStore)
    : QCompleter(&field)
    , field_(field)
    , dataStore_(std::move(dataStore))
    , model_(new QStringListModel(this))
    , list_(new QListView)
{
    // Its own list, since the completer makes one at a time when events already come.
    list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setSelectionBehavior(QAbstractItemView::SelectRows);
    list_->setSelectionMode(QAbstractItemView::SingleSelection);
    setModel(model_);
    setPopup(list_);
    setCaseSensitivity(Qt::CaseInsensitive);
    setFilterMode(Qt::MatchContains);
    // Not the field's own completer, which would complete the whole text.
    setWidget(&field);
    connect(&field, &QLineEdit::textEdited, this, &FilterCompleter::offer);
    connect(this, qOverload<const QString &>(&QCompleter::activated), this,
            &FilterCompleter::insert);
}

void FilterCompleter::setOn(bool on)
{
    isOn_ = on;
    list_->hide();
}

// The list's keys, which else would reach the field first: it clears itself at Escape.
bool FilterCompleter::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == list_ && event->type() == QEvent::KeyPress &&
        handleKey(static_cast<QKeyEvent *>(event)->key()))
        return true;
    return QCompleter::eventFilter(watched, event);
}

bool FilterCompleter::handleKey(int key)
{
    const QModelIndex current = list_->currentIndex();
    switch (key) {
    case Qt::Key_Escape:
        list_->hide();
        return true;
    case Qt::Key_Tab:
        list_->hide();
        insert(current.isValid() ? current.data().toString() : currentCompletion());
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        list_->hide();
        if (current.isValid())
            insert(current.data().toString());
        return current.isValid(); // else it is the field's
    default:
        return false;
    }
}

void FilterCompleter::offer()
{
    const QString word = isOn_ ? wordAtCursor() : QString();
    if (word.size() < minLetters)
        return list_->hide();
    refreshWords();
    setCompletionPrefix(word);
    const bool isComplete = completionCount() == 1 && currentCompletion() == word;
    if (completionCount() == 0 || isComplete)
        return list_->hide();
    complete();
}

void FilterCompleter::refreshWords()
{
    if (model_->rowCount() > 0 && wordsAsOf_ == dataStore_->lastUpdateDate())
        return;
    wordsAsOf_ = dataStore_->lastUpdateDate();
    QStringList words = FilterFields::names();
    words += {QStringLiteral("exists("), QStringLiteral("prop("), QStringLiteral("under(")};
    words += keysOccurring(*dataStore_);
    words.removeDuplicates();
    model_->setStringList(words);
}

void FilterCompleter::insert(const QString &word)
{
    const auto length = static_cast<int>(wordAtCursor().size());
    field_.setSelection(field_.cursorPosition() - length, length);
    field_.insert(word);
}

QString FilterCompleter::wordAtCursor() const
{
    const QString text = field_.text().left(field_.cursorPosition());
    FilterTokenizer tokenizer(text);
    FilterToken last;
    for (FilterToken token = tokenizer.next(); token.kind != FilterToken::Kind::End;
         token = tokenizer.next())
        last = token;
    if (last.kind != FilterToken::Kind::Word || last.position + last.length != text.size())
        return {};
    return last.text.startsWith(u'@') ? last.text.sliced(1) : last.text;
}
