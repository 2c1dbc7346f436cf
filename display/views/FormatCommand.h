// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/FormatChange.h"
#include "model/TavRegistryProperty.h"

#include <QUndoCommand>

// An undoable change of stored formats.
class FormatCommand : public QUndoCommand
{
public:
    // The change has been made already; item: the one it was made for, or null.
    FormatCommand(const QString &text, FormatChange change, TavRegistryProperty *item);

    void undo() override;
    void redo() override;

private:
    FormatChange change_;
    std::weak_ptr<TavRegistryProperty> item_;
    bool isMade_ = true;
};
