#include "AnimCommand.h"

#include <algorithm>

#include <cstdio>

#include "anim/Track.h"
#include "anim/TrackReadAhead.h"
#include "anim/TrackReader.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "scene/World.h"

namespace {

const char* const k_usage =
    "Usage: kuvo-anim info FILE\n"
    "  or:  kuvo-anim validate FILE\n"
    "  or:  kuvo-anim fmt FILE [-o OUT]\n"
    "  or:  kuvo-anim eval FILE (--times T1,T2,... | --from A --to B --step S) [--world SCENE]\n"
    "  or:  kuvo-anim import-gltf IN.gltf|IN.glb OUT.anim [--animation NAME|INDEX] [--world SCENE]\n"
    "  or:  kuvo-anim export-gltf IN.anim OUT.gltf|OUT.glb --world SCENE\n"
    "  or:  kuvo-anim --help\n"
    "Checks, inspects, evaluates and rewrites Kuvo animation track files (.anim, described in\n"
    "anim-format.md in the documentation).\n"
    "\n"
    "Verbs:\n"
    "  info      prints the range, the loop switch and every parameter's kind, type, binding and key count\n"
    "  validate  checks a track file; prints FILE:LINE:COLUMN: reason for every problem\n"
    "  fmt       rewrites a track file canonically (in place, or to OUT)\n"
    "  eval      prints every parameter's values at the given times as one JSON document\n"
    "  import-gltf  makes a track of a glTF animation's node translations, rotations and scales\n"
    "  export-gltf  writes a track's node positions, rotations and scales as a glTF animation\n"
    "\n"
    "Options:\n"
    "  -o OUT             (fmt) write the canonical file to OUT and leave FILE as it is\n"
    "  --times T1,T2,...  (eval) the times to evaluate, in seconds\n"
    "  --from A --to B --step S\n"
    "                     (eval) every S seconds from A to B\n"
    "  --world SCENE      (eval) bind the parameters to the nodes and materials of this .world file;\n"
    "                     (import-gltf) bind them to the scene nodes named as the glTF nodes;\n"
    "                     (export-gltf) the scene whose nodes the track animates\n"
    "  --animation NAME|INDEX\n"
    "                     (import-gltf) the animation to import (the first one by default)\n"
    "  -h, --help         print this text and exit\n"
    "\n"
    "Exit status: 0 success, 1 invalid input, 2 usage error.\n";

} // namespace

int AnimCommand::usage(const std::string& message)
{
    if (!message.empty())
        std::fprintf(stderr, "kuvo-anim: %s\n", message.c_str());
    std::fputs(k_usage, stderr);
    return USAGE;
}

int AnimCommand::help()
{
    std::fputs(k_usage, stdout);
    return OK;
}

std::vector<std::string> AnimCommand::load(const std::string& path, Track& track, World* world, bool strict)
{
    std::vector<std::string> lines;
    mjl document;
    // Parameters are read on the worker while the rest of the file is parsed.
    TrackReadAhead ahead(strict);
    if (!document.open(path.c_str(), mjl::NUMBER_ROWS, &ahead)) {
        lines.push_back(document.getError());
        return lines;
    }
    TrackReader reader(strict);
    if (track.read(reader, document.getRoot(), world, &ahead))
        return lines;
    for (const TrackReader::Problem& p : reader.problems())
        lines.push_back(path + ":" + std::to_string(p.line) + ":" + std::to_string(p.column) + ": " + p.reason);
    return lines;
}

std::string AnimCommand::splitFiles(const std::vector<std::string>& args, const std::vector<Option>& options,
                                    std::string& in, std::string& out, const std::string& shape)
{
    std::vector<std::string> files;
    for (size_t i = 0; i < args.size(); ++i) {
        const auto option = std::find_if(options.begin(), options.end(), [&](const Option& o) { return args[i] == o.name; });
        if (option != options.end() && i + 1 < args.size())
            *option->value = args[++i];
        else if (args[i].rfind("--", 0) == 0)
            return "unexpected argument \"" + args[i] + "\"";
        else
            files.push_back(args[i]);
    }
    if (files.size() != 2)
        return shape;
    in = files[0];
    out = files[1];
    return "";
}

bool AnimCommand::report(const std::vector<std::string>& problems)
{
    for (const std::string& line : problems)
        std::fprintf(stderr, "%s\n", line.c_str());
    return problems.empty();
}

std::vector<std::string> AnimCommand::loadWorld(const std::string& path, World& world)
{
    // The scene's reader reports only to the log, which this tool keeps off the terminal.
    jLogBuffer log;
    std::vector<std::string> lines;
    if (world.load(path.c_str()))
        return lines;
    for (const jLogBuffer::Line& line : log.lines()) {
        if (line.level >= jLogLevel::Error)
            lines.push_back(jLog::withoutReporter(line.text));
    }
    if (lines.empty())
        lines.push_back(path + ": the scene cannot be loaded");
    return lines;
}
