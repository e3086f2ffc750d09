#include <cstdio>

#include "AnimCommand.h"
#include "anim/Track.h"

int AnimCommand::validate(const std::vector<std::string>& args)
{
    if (args.size() != 1)
        return usage("validate takes one FILE");
    Track track;
    std::vector<std::string> problems = load(args[0], track, nullptr, true);
    for (const std::string& line : problems)
        std::printf("%s\n", line.c_str());
    if (!problems.empty())
        return INVALID;
    std::printf("%s: valid, %d parameters\n", args[0].c_str(), track.getNumParameters());
    return OK;
}
