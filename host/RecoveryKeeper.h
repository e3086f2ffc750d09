#pragma once

#include <string>

#include "RecoveryStore.h"

class UIElement;
struct TrackEditorPluginApi;

// Keeps a recovery copy of the editor's document in the store: written while the document holds
// unsaved edits, kept when the document is discarded, deleted once the edits are saved.
class RecoveryKeeper {
public:
    RecoveryKeeper(const TrackEditorPluginApi* api, UIElement* editor, RecoveryStore store);

    const RecoveryStore& store() const { return m_store; }
    // Writes the copy when the document holds unsaved edits (the engine's atomic save). Returns
    // false, with the path and the reason logged as an error, when it cannot be written.
    bool save();
    // Writes the copy of a document about to be discarded (why names the command) and leaves it
    // for the next start, saying so in the log; does nothing without unsaved edits.
    void keepBeforeDiscard(const char* why);
    // Deletes the copy once the document holds no unsaved edits (after a save, a load, a clear).
    void tidy();
    // Opens copy as the document of its file, marked edited, writes this run's copy of it and
    // deletes the old one. Returns false (logged) when it cannot be opened; the copy then stays.
    bool restore(const RecoveryStore::Copy& copy);
    // Deletes copy. Returns false (logged) when it cannot be deleted.
    bool discard(const RecoveryStore::Copy& copy);

private:
    const TrackEditorPluginApi* m_api;
    UIElement* m_editor;
    RecoveryStore m_store;
    // The copy this run wrote for the current document; "" when there is none to tidy.
    std::string m_copy;
};
