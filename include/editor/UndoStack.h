#pragma once

#include <cstddef>

#include "kit/SignalSlot.h"
#include "kit/jString.h"

class UndoCommand;
class UndoStackImpl;

// The history of a document's edits, kept by the toolkit's undo stack. Commands are pushed after
// their action ran, so pushing does not run them again. The clean state is the one that was last
// loaded or saved; the document is modified whenever the stack is elsewhere.
class UndoStack {
public:
    UndoStack();
    ~UndoStack();
    UndoStack(const UndoStack&) = delete;
    UndoStack& operator=(const UndoStack&) = delete;

    // Takes command (made with jNew) as the newest step, dropping every step that was undone;
    // a null command is ignored.
    void push(UndoCommand* command);
    // Undoes the newest done step; false (nothing done) when there is none.
    bool undo();
    // Redoes the oldest undone step; false (nothing done) when there is none.
    bool redo();
    bool canUndo() const;
    bool canRedo() const;
    // The names of the steps undo and redo would act on; empty when there is none.
    jString undoName() const;
    jString redoName() const;
    // The number of steps, done and undone, and how many of them are done.
    int count() const;
    int index() const;
    // Keeps the done steps within bytes of recorded state (0: no bound): a push beyond it frees the
    // oldest steps, always keeping the newest. When the clean state was among them, no step leads
    // back to it any more.
    void setByteLimit(size_t bytes);
    // Frees every step; the empty history is clean.
    void clear();
    // Marks the current state as the one on disk.
    void setClean();
    // Forgets the clean state: no step leads back to it (a document restored from a recovery copy).
    void resetClean();
    bool isClean() const;
    // Runs listener after every change of the steps, the index or the clean state; an empty one stops it.
    void setListener(Function<void()> listener);

private:
    UndoStackImpl* m_impl;
};
