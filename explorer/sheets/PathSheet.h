// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/sheets/Sheet.h"

#include <memory>

class EntryPathCompleter;
class TavDataStore;

// Asks for a registry path to go to.
class PathSheet : public Sheet
{
    Q_OBJECT
public:
    PathSheet(QWidget &window, const std::shared_ptr<TavDataStore> &dataStore);

    void open();

Q_SIGNALS:
    void pathEntered(const QString &path);

private:
    void report() override;

    QLineEdit *goToPathField_;
    EntryPathCompleter *completer_;
};
