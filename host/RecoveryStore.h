#pragma once

#include <string>

// The per-user folder of recovery copies. While a document holds unsaved edits the host writes it
// there as "<name>-<process>-<hash>.anim", beside a note "<copy>.document" that names the document's
// file (empty for an untitled document); the next start offers the newest copy.
class RecoveryStore {
public:
    // The environment variable that names another folder (the tests use one of their own).
    static constexpr const char* FOLDER_VARIABLE = "KUVO_RECOVERY_DIR";

    // A copy found in the folder.
    struct Copy {
        std::string path;     // the copy; "" when there is none
        std::string document; // the file it is a copy of; "" for an untitled document
    };

    // Returns $KUVO_RECOVERY_DIR, else $XDG_STATE_HOME/kuvo/recovery, else
    // $HOME/.local/state/kuvo/recovery; "" when none of these variables is set.
    static std::string defaultFolder();

    explicit RecoveryStore(std::string folder) : m_folder(std::move(folder)) {}

    const std::string& folder() const { return m_folder; }
    // Returns where this process keeps the copy of the document of file document ("" untitled).
    std::string copyPath(const std::string& document) const;
    // Creates the folder and writes the note naming document beside copy, replacing it atomically.
    // Returns false with the path and the system's reason in error when either cannot be made.
    bool prepare(const std::string& copy, const std::string& document, std::string& error) const;
    // Returns the newest copy that is newer than the file its note names (or whose file is gone, or
    // untitled); a copy without a readable note is skipped. Returns an empty Copy when none is left.
    Copy newest() const;
    // Deletes copy and its note. Returns false with the path and the system's reason in error when
    // either exists and cannot be deleted.
    bool remove(const std::string& copy, std::string& error) const;

    // The note's file name suffix.
    static constexpr const char* NOTE_SUFFIX = ".document";

private:
    std::string m_folder;
};
