#include "scene/Engine.h"

Engine* Engine::get()
{
    static Engine engine;
    return &engine;
}

void Engine::setDataPath(const jString& path)
{
    // Moving a fresh string in hands the old buffer to the temporary, which frees it.
    m_data_path = jString(path.c_str(), path.length());
}
