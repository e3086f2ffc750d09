#pragma once

#include <cstddef>

#include "kit/jString.h"

// One undoable user action. A command records what it needs when it is made, after (or before) the
// action ran, so undo and redo only assign recorded state back; it never keeps pointers to objects
// that an undo or a reload frees and rebuilds.
class UndoCommand {
public:
    virtual ~UndoCommand() = default;
    // Puts the document back as it was before the action.
    virtual void undo() = 0;
    // Puts the document back as it was right after the action.
    virtual void redo() = 0;
    // The action's name as the undo and redo buttons show it ("Move keys").
    virtual jString name() const = 0;
    // The bytes of recorded state the command holds, which the history's memory bound counts.
    virtual size_t bytes() const = 0;
};
