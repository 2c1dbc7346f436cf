// SPDX-License-Identifier: Apache-2.0
#include "explorer/sheets/EntryPathCompleter.h"

#include <QLineEdit>
#include <QStringListModel>

EntryPathCompleter::EntryPathCompleter(QLineEdit &field,
                                       std::shared_ptr<const TavDataStore> dataStore)
    : QCompleter(&field)
    , field_(field)
    , reader_(std::move(dataStore))
    , model_(new QStringListModel(this))
{
    setModel(model_);
    setCaseSensitivity(Qt::CaseInsensitive);
    setModelSorting(CaseInsensitivelySortedModel);
    field.setCompleter(this);
    // Moving through the list changes the text, but not the list.
    connect(&field, &QLineEdit::textEdited, this, &EntryPathCompleter::offer);
    connect(&field, &QLineEdit::textChanged, this, &EntryPathCompleter::readProblem);
}

void EntryPathCompleter::refresh()
{
    reader_.refresh();
    offer();
    readProblem();
}

void EntryPathCompleter::offer()
{
    const QStringList &offers = candidates(field_.text());
    if (offers != model_->stringList())
        model_->setStringList(offers);
}

void EntryPathCompleter::readProblem()
{
    Q_EMIT problemRead(reader_.problem(field_.text()));
}
