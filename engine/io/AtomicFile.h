#pragma once

#include <cstddef>
#include <string>

// Replaces a file's content so that, whatever happens (a full disk, a crash, a kill), the file
// holds either its old content or the new one: the bytes go to a temporary file beside it, which
// is synced and then renamed over it.
class AtomicFile {
public:
    // Writes size bytes to path. Returns false with the reason in reason ("what failed: system
    // message") when any step fails; the file is then untouched and the temporary file removed.
    static bool replace(const char* path, const char* data, size_t size, std::string& reason);
};
