#include "scene/Engine.h"

Engine* Engine::get()
{
    static Engine engine;
    return &engine;
}

void Engine::setDataPath(const jString& path)
{
    jKit::setDataPath(path); // one data folder for the whole engine: the kit keeps it
}
