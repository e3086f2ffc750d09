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

// Reads the arguments; returns an empty text, or why they are not usable.
std::string parseOptions(const std::vector<std::string>& args, Options& o)
{
    std::vector<std::string> files;
    for (size_t i = 0; i < args.size(); ++i) {
        bool value = i + 1 < args.size();
        if (args[i] == "--animation" && value)
            o.animation = args[++i];
        else if (args[i] == "--world" && value)
            o.world = args[++i];
        else if (args[i].rfind("--", 0) == 0)
            return "unexpected argument \"" + args[i] + "\"";
        else
            files.push_back(args[i]);
    }
    if (files.size() != 2)
        return "import-gltf takes IN.gltf|IN.glb and OUT.anim";
    o.in = files[0];
    o.out = files[1];
    return "";
}

} // namespace

int AnimCommand::importGltf(const std::vector<std::string>& args)
{
    Options o;
    std::string problem = parseOptions(args, o);
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
