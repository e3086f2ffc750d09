#include "kit/jKit.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <string>

namespace {

jString& dataPath()
{
    static jString path;
    return path;
}

constexpr std::array<uint32_t, 256> makeCrcTable()
{
    std::array<uint32_t, 256> table{};
    for (uint32_t i = 0; i < 256; ++i) {
        uint32_t c = i;
        for (int bit = 0; bit < 8; ++bit)
            c = (c & 1u) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        table[i] = c;
    }
    return table;
}

constexpr std::array<uint32_t, 256> CRC_TABLE = makeCrcTable();

bool isSeparator(char c)
{
    return c == '/' || c == '\\';
}

// Removes the last segment of a normalised path being built; returns false when there is none
// that ".." may cancel (the path is empty, at its root, or already ends in "..").
bool dropLastSegment(jString& out, int rootLength)
{
    if (out.length() <= rootLength)
        return false;
    int cut = out.rfind("/");
    jString last = out.substr(cut + 1);
    if (last == "..")
        return false;
    out = out.substr(0, cut < rootLength ? rootLength : cut);
    return true;
}

// Returns whether the normalised path lies inside the normalised folder (not the root), with the
// path relative to the folder in rest.
bool pathInside(const jString& path, const jString& folder, jString& rest)
{
    if (folder.empty() || folder == "/" || path.length() <= folder.length() + 1 ||
        path.c_str()[folder.length()] != '/' ||
        std::strncmp(path.c_str(), folder.c_str(), static_cast<size_t>(folder.length())) != 0)
        return false;
    rest = path.substr(folder.length() + 1);
    return true;
}

} // namespace

jString jKit::getFileName(const jString& path)
{
    for (int i = path.length() - 1; i >= 0; --i) {
        if (isSeparator(path.c_str()[i]))
            return path.substr(i + 1);
    }
    return path;
}

void jKit::setDataPath(const jString& path)
{
    dataPath() = normalizePath(path);
}

const jString& jKit::getDataPath()
{
    return dataPath();
}

jString jKit::normalizePath(const jString& path)
{
    const char* text = path.c_str();
    int n = path.length();
    jString out;
    int rootLength = 0;
    if (n > 0 && isSeparator(text[0])) {
        out = "/";
        rootLength = 1;
    }
    int i = 0;
    while (i < n) {
        while (i < n && isSeparator(text[i]))
            ++i;
        int start = i;
        while (i < n && !isSeparator(text[i]))
            ++i;
        jString segment(text + start, i - start);
        if (segment.empty() || segment == ".")
            continue;
        if (segment == ".." && dropLastSegment(out, rootLength))
            continue;
        if (segment == ".." && rootLength > 0 && out.length() == rootLength)
            continue; // nothing is above the root
        if (out.length() > rootLength)
            out += '/';
        out += segment;
    }
    return out;
}

jString jKit::convertToLocalPath(const jString& path)
{
    jString normal = normalizePath(path);
    jString rest;
    return pathInside(normal, dataPath(), rest) ? rest : normal;
}

jString jKit::convertToStoredPath(const jString& path)
{
    if (path.empty() || !isSeparator(path.c_str()[0]) || dataPath().empty())
        return path;
    jString rest;
    if (pathInside(normalizePath(path), dataPath(), rest))
        return rest;
    // The same file reached through a symbolic link (a linked home folder, say) is inside too.
    std::error_code pathFailed, dataFailed;
    std::string real = std::filesystem::weakly_canonical(path.c_str(), pathFailed).string();
    std::string data = std::filesystem::weakly_canonical(dataPath().c_str(), dataFailed).string();
    if (pathFailed || dataFailed || !pathInside(jString(real.c_str()), jString(data.c_str()), rest))
        return path;
    return rest;
}

uint32_t jKit::crc32(const void* data, size_t size, uint32_t previous)
{
    const unsigned char* bytes = static_cast<const unsigned char*>(data);
    uint32_t c = ~previous;
    for (size_t i = 0; i < size; ++i)
        c = CRC_TABLE[(c ^ bytes[i]) & 0xFFu] ^ (c >> 8);
    return ~c;
}
