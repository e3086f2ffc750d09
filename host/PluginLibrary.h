#pragma once

#include <string>

// A shared library loaded at run time. The library stays loaded until close() or destruction.
class PluginLibrary {
public:
    PluginLibrary() = default;
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    // Loads the library at path (closing any library loaded before). Returns false and keeps
    // "path: loader's reason" in getError() when it cannot be loaded.
    bool open(const std::string& path);
    // Returns the address of an exported symbol, or null with "path: symbol NAME: reason" in
    // getError().
    void* symbol(const char* name);
    // Unloads the library; does nothing when none is loaded.
    void close();

    const std::string& getPath() const { return m_path; }
    const std::string& getError() const { return m_error; }

private:
    void* m_handle = nullptr;
    std::string m_path;
    std::string m_error;
};
