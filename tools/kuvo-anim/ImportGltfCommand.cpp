#include <cstdio>

#include "AnimCommand.h"
#include "anim/GltfImport.h"
#include "anim/Track.h"
#include "scene/World.h"

namespace {

struct Options {
    std::string in;
    std::string out;
    std::string animation;
    std::string world;
};

} // namespace

int AnimCommand::importGltf(const std::vector<std::string>& args)
{
    Options o;
    std::string problem = splitFiles(args, {{"--animation", &o.animation}, {"--world", &o.world}}, o.in, o.out,
                                     "import-gltf takes IN.gltf|IN.glb and OUT.anim");
    if (!problem.empty())
        return usage(problem);
    World world;
    if (!o.world.empty() && !report(loadWorld(o.world, world)))
        return INVALID;
    GltfImport importer;
    importer.setAnimation(o.animation);
    importer.setWorld(o.world.empty() ? nullptr : &world);
    if (!importer.read(o.in)) {
        report({importer.getError()});
        return INVALID;
    }
    for (const std::string& line : importer.getWarnings())
        std::fprintf(stderr, "warning: %s\n", line.c_str());
    Track track;
    importer.addTo(track);
    std::string error;
    if (!track.saveFile(o.out.c_str(), &error)) {
        report({error});
        return INVALID;
    }
    return OK;
}
