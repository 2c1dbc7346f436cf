// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/selection/RegistryPathReader.h"

#include <QCompleter>

class QLineEdit;
class QStringListModel;

// Offers planes, and then the names below what has been typed, in a field for registry paths.
class EntryPathCompleter : public QCompleter
{
    Q_OBJECT
public:
    // The field owns it.
    EntryPathCompleter(QLineEdit &field, std::shared_ptr<const TavDataStore> dataStore);

    void refresh(); // after a change of the registry
    const QStringList &candidates(const QString &text) { return reader_.candidates(text); }

Q_SIGNALS:
    // Of the text in the field, also when a program has set it.
    void problemRead(const RegistryPathReader::Problem &problem);

private:
    void offer();
    void readProblem();

    QLineEdit &field_;
    RegistryPathReader reader_;
    QStringListModel *model_;
};
