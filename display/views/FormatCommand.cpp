// SPDX-License-Identifier: Apache-2.0
#include "display/views/FormatCommand.h"

#include "display/PropertyFormatStore.h"
#include "display/views/TavFormatController.h"

FormatCommand::FormatCommand(const QString &text, FormatChange change, TavRegistryProperty *item)
    : QUndoCommand(text)
    , change_(std::move(change))
    , item_(item ? item->ref() : nullptr)
{}

void FormatCommand::undo()
{
    isMade_ = false;
    PropertyFormatStore::undo(change_);
    TavFormatController::sharedInstance().noteFormatsRestored(item_.lock());
}

// QUndoStack calls redo() on push, but the change has been made already.
void FormatCommand::redo()
{
    if (std::exchange(isMade_, true))
        return;
    PropertyFormatStore::redo(change_);
    TavFormatController::sharedInstance().noteFormatsRestored(item_.lock());
}
