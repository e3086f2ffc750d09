#include <cstdio>

#include "AnimCommand.h"
#include "anim/GltfExport.h"
#include "anim/Track.h"
#include "scene/World.h"

namespace {

struct Options {
    std::string in;
    std::string out;
    std::string world;
};

// Returns the file's name without its folder and extension.
std::string stem(const std::string& path)
{
    std::string name = path.substr(path.find_last_of('/') + 1);
    return name.substr(0, name.find_last_of('.'));
}

} // namespace

int AnimCommand::exportGltf(const std::vector<std::string>& args)
{
    Options o;
    std::string problem = splitFiles(args, {{"--world", &o.world}}, o.in, o.out, "export-gltf takes IN.anim and OUT.gltf|OUT.glb");
    if (problem.empty() && o.world.empty())
        problem = "export-gltf needs --world SCENE: the glTF nodes rest where the scene's nodes are";
    if (!problem.empty())
        return usage(problem);
    World world;
    Track track;
    if (!report(loadWorld(o.world, world)) || !report(load(o.in, track, &world, false)))
        return INVALID;
    GltfExport exporter;
    exporter.setName(stem(o.in));
    exporter.setSource(o.in);
    if (!exporter.write(track, world, o.out)) {
        report({exporter.getError()});
        return INVALID;
    }
    for (const std::string& line : exporter.getWarnings())
        std::fprintf(stderr, "warning: %s: %s\n", o.in.c_str(), line.c_str());
    return OK;
}
