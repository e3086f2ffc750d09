#include "DataLocator.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

std::string DataLocator::executableDir()
{
    std::error_code ec;
    fs::path exe = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string() : exe.parent_path().string();
}

std::string DataLocator::findRoot(const std::string& start)
{
    if (start.empty())
        return std::string();
    std::error_code ec;
    fs::path dir = fs::weakly_canonical(fs::absolute(start, ec), ec);
    while (!ec) {
        std::error_code missing; // a folder without the marker is not an error
        if (fs::is_regular_file(dir / MARKER, missing))
            return dir.string();
        if (!dir.has_parent_path() || dir.parent_path() == dir)
            break;
        dir = dir.parent_path();
    }
    return std::string();
}
