#pragma once

#include <cstddef>
#include <string>

// Replaces a file's content so that, whatever happens (a full disk, a crash, a kill), the file
// holds either its old content or the new one: the bytes go to a temporary file beside it, which
// is synced and then renamed over it. Until commit() succeeds the target is not touched, and a
// replacement that is dropped removes its temporary file.
class AtomicFile {
public:
    explicit AtomicFile(const char* path);
    // Removes the temporary file unless the replacement was committed.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Creates the temporary file. Returns false with the reason in getReason() when it cannot.
    bool open();
    // Appends bytes to the temporary file. Returns false with the reason when the system refuses
    // them (a full disk, for instance).
    bool write(const char* data, size_t size);
    // Syncs the temporary file and renames it over the target. Returns false with the reason when
    // any step fails or when the target exists and the user may not write it ("the file is
    // read-only: Permission denied"); the target is then untouched and the temporary file removed.
    bool commit();
    // "what failed: system message" for the last failure.
    const std::string& getReason() const { return m_reason; }

private:
    bool fail(const char* what);
    void discard();
    // Returns false, with errno saying why, when the target exists and the user may not write it.
    bool may_replace() const;
    // Makes the rename durable.
    void sync_folder();

    std::string m_path;
    std::string m_folder;
    std::string m_temp;
    std::string m_reason;
    int m_fd = -1;
};
