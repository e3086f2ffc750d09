// Feeds arbitrary bytes to the .world reader. Whatever it accepts must write out canonically and
// read back to the same text; whatever it refuses must leave nothing allocated behind.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "scene/Engine.h"
#include "scene/World.h"
#include "scene/WorldWriter.h"

namespace {

std::string canonical(const World& world)
{
    Package root;
    WorldWriter::write(world, *Engine::get()->getMaterialManager(), root);
    std::string text;
    mjl::write(&root, text);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    jLog::setStderr(false);
    mjl document;
    if (!document.parse(reinterpret_cast<const char*>(data), size, "fuzz.world"))
        return 0;
    World world;
    if (!world.loadDocument(document.getRoot(), "fuzz.world"))
        return 0;
    std::string first = canonical(world);
    mjl again;
    World reloaded;
    if (!again.parse(first.data(), first.size(), "canonical.world") ||
        !reloaded.loadDocument(again.getRoot(), "canonical.world") || canonical(reloaded) != first)
        std::abort();
    return 0;
}
