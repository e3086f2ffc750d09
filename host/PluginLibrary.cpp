#include "PluginLibrary.h"

#include <dlfcn.h>

PluginLibrary::~PluginLibrary()
{
    close();
}

bool PluginLibrary::open(const std::string& path)
{
    close();
    m_path = path;
    m_handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_handle) {
        const char* reason = dlerror();
        m_error = path + ": " + (reason ? reason : "cannot be loaded");
        return false;
    }
    m_error.clear();
    return true;
}

void* PluginLibrary::symbol(const char* name)
{
    if (!m_handle) {
        m_error = m_path + ": symbol " + name + ": no library is loaded";
        return nullptr;
    }
    dlerror();
    void* address = dlsym(m_handle, name);
    if (!address) {
        const char* reason = dlerror();
        m_error = m_path + ": symbol " + name + ": " + (reason ? reason : "not found");
    }
    return address;
}

void PluginLibrary::close()
{
    if (m_handle)
        dlclose(m_handle);
    m_handle = nullptr;
}
