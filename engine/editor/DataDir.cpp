#include "editor/DataDir.h"

#include <cstdlib>
#include <cstring>

namespace {

std::string& explicitRoot()
{
    static std::string root;
    return root;
}

std::string withoutTrailingSlash(std::string dir)
{
    while (dir.size() > 1 && dir.back() == '/')
        dir.pop_back();
    return dir;
}

} // namespace

void DataDir::set(const char* dir)
{
    explicitRoot() = dir ? withoutTrailingSlash(dir) : std::string();
}

std::string DataDir::get()
{
    if (!explicitRoot().empty())
        return explicitRoot();
    const char* fromEnv = std::getenv("KUVO_DATA_DIR");
    if (fromEnv && *fromEnv)
        return withoutTrailingSlash(fromEnv);
    return "data";
}

std::string DataDir::resolve(const char* path)
{
    if (!path || !*path)
        return get();
    if (path[0] == '/')
        return path;
    if (std::strncmp(path, "data/", 5) == 0)
        path += 5;
    return get() + "/" + path;
}

std::string DataDir::iconDir()
{
    return resolve("data/core/editor/gui/");
}
