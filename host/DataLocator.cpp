#include "DataLocator.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// Where an installation keeps the data, relative to the programs' folder, and the source folder's
// data, both decided when the build is configured.
const char* const k_installed_data = KUVO_DATA_FROM_BIN;
const char* const k_source_data = KUVO_SOURCE_DATA_DIR;

// Returns path lexically normal and without a trailing separator ("/a/b/../c/" gives "/a/c").
std::string normalFolder(const fs::path& path)
{
    fs::path normal = path.lexically_normal();
    return (normal.has_filename() || normal == normal.root_path() ? normal : normal.parent_path()).string();
}

} // namespace

std::string DataLocator::executableDir()
{
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : exe.parent_path().string();
}

bool DataLocator::holdsData(const std::string& dir)
{
    std::error_code missing; // a folder without the marker is not an error
    return !dir.empty() && fs::is_regular_file(fs::path(dir) / MARKER, missing);
}

std::string DataLocator::beside(const std::string& programDir, const std::string& relative)
{
    return normalFolder(fs::path(programDir) / relative);
}

std::string DataLocator::dataDir(const std::string& programDir, std::string& error)
{
    error.clear();
    const char* fromEnv = std::getenv(DATA_VARIABLE);
    if (fromEnv && *fromEnv) {
        std::string dir = normalFolder(fromEnv);
        if (holdsData(dir))
            return dir;
        error = std::string(DATA_VARIABLE) + " names " + dir + ", which has no " + MARKER;
        return std::string();
    }
    std::string installed = beside(programDir, k_installed_data);
    for (const std::string& dir : {installed, std::string(k_source_data)}) {
        if (holdsData(dir))
            return dir;
    }
    error = std::string("cannot find the editor's data: neither ") + installed + " nor " + k_source_data + " holds " +
            MARKER + " (" + DATA_VARIABLE + " names another data folder)";
    return std::string();
}
