#pragma once

#include "display/FormatChange.h"
#include "model/TavRegistryProperty.h"

#include <QUndoCommand>

// A change of stored formats that the user can take back.
class FormatCommand : public QUndoCommand
{
public:
    // Made already; of the item, or of none.
    FormatCommand(const QString &text, FormatChange change, TavRegistryProperty *item);

    void undo() override;
    void redo() override;

private:
    FormatChange change_;
    std::weak_ptr<TavRegistryProperty> item_;
    bool isMade_ = true;
};
