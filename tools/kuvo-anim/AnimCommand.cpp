#include "AnimCommand.h"

#include <cstdio>

#include "anim/Track.h"
#include "anim/TrackReader.h"
#include "io/mjl.h"

int AnimCommand::usage(const std::string& message)
{
    if (!message.empty())
        std::fprintf(stderr, "kuvo-anim: %s\n", message.c_str());
    std::fputs("usage: kuvo-anim info FILE\n"
               "       kuvo-anim validate FILE\n"
               "       kuvo-anim fmt FILE [-o OUT]\n"
               "       kuvo-anim eval FILE (--times T1,T2,... | --from A --to B --step S) [--world SCENE]\n"
               "\n"
               "info      prints the range, the loop switch and every parameter's kind, type, binding and key count\n"
               "validate  checks a track file; prints FILE:LINE:COLUMN: reason for every problem\n"
               "fmt       rewrites a track file canonically (in place, or to OUT)\n"
               "eval      prints every parameter's values at the given times as one JSON document\n"
               "\n"
               "exit status: 0 success, 1 invalid input, 2 usage error\n",
               stderr);
    return USAGE;
}

std::vector<std::string> AnimCommand::load(const std::string& path, Track& track, World* world, bool registry)
{
    std::vector<std::string> lines;
    mjl document;
    if (!document.open(path.c_str())) {
        lines.push_back(document.getError());
        return lines;
    }
    TrackReader reader(registry);
    if (track.read(reader, document.getRoot(), world))
        return lines;
    for (const TrackReader::Problem& p : reader.problems())
        lines.push_back(path + ":" + std::to_string(p.line) + ":" + std::to_string(p.column) + ": " + p.reason);
    return lines;
}
