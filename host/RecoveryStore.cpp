#include "RecoveryStore.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

// A hash that stays the same from one build to the next, so a path always names the same copy.
std::uint32_t fnv1a(const std::string& text)
{
    std::uint32_t hash = 2166136261u;
    for (unsigned char c : text)
        hash = (hash ^ c) * 16777619u;
    return hash;
}

std::string reason_of(const std::string& path, const std::error_code& ec)
{
    return path + ": " + ec.message();
}

bool read_note(const fs::path& note, std::string& document)
{
    std::ifstream in(note, std::ios::binary);
    return in && std::getline(in, document).good();
}

// True when the copy is worth offering: newer than its document's file, or that file is gone.
bool newer_than_document(const fs::path& copy, const std::string& document, fs::file_time_type& written)
{
    std::error_code ec;
    written = fs::last_write_time(copy, ec);
    if (ec)
        return false;
    if (document.empty())
        return true;
    fs::file_time_type original = fs::last_write_time(document, ec);
    return ec || written > original;
}

} // namespace

std::string RecoveryStore::defaultFolder()
{
    if (const char* folder = std::getenv(FOLDER_VARIABLE); folder && *folder)
        return folder;
    if (const char* state = std::getenv("XDG_STATE_HOME"); state && *state)
        return std::string(state) + "/kuvo/recovery";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::string(home) + "/.local/state/kuvo/recovery";
    return std::string();
}

std::string RecoveryStore::copyPath(const std::string& document) const
{
    std::string name = document.empty() ? "untitled" : fs::path(document).stem().string();
    char tail[40];
    std::snprintf(tail, sizeof(tail), "-%ld-%08x.anim", static_cast<long>(getpid()),
                  static_cast<unsigned>(fnv1a(document)));
    return (fs::path(m_folder) / (name + tail)).string();
}

bool RecoveryStore::prepare(const std::string& copy, const std::string& document, std::string& error) const
{
    std::error_code ec;
    fs::create_directories(m_folder, ec);
    if (ec) {
        error = reason_of(m_folder, ec);
        return false;
    }
    std::string note = copy + NOTE_SUFFIX;
    std::string temporary = note + ".tmp";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        if (!(out << document << '\n') || !out.flush()) {
            error = temporary + ": " + std::strerror(errno);
            fs::remove(temporary, ec);
            return false;
        }
    }
    fs::rename(temporary, note, ec);
    if (ec) {
        error = reason_of(note, ec);
        fs::remove(temporary, ec);
        return false;
    }
    return true;
}

RecoveryStore::Copy RecoveryStore::newest() const
{
    Copy best;
    fs::file_time_type best_time;
    std::error_code ec;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_folder, ec)) {
        fs::path path = entry.path();
        std::string document;
        fs::file_time_type written;
        if (path.extension() != ".anim" || !read_note(path.string() + NOTE_SUFFIX, document) ||
            !newer_than_document(path, document, written))
            continue;
        if (best.path.empty() || written > best_time) {
            best = Copy{path.string(), document};
            best_time = written;
        }
    }
    return best;
}

bool RecoveryStore::remove(const std::string& copy, std::string& error) const
{
    for (const std::string& path : {copy, copy + NOTE_SUFFIX}) {
        std::error_code ec;
        fs::remove(path, ec);
        if (ec) {
            error = reason_of(path, ec);
            return false;
        }
    }
    return true;
}
