#include <cstdio>

#include "AnimCommand.h"
#include "anim/Track.h"

int AnimCommand::fmt(const std::vector<std::string>& args)
{
    std::string in, out;
    for (size_t i = 0; i < args.size(); ++i) {
        if (args[i] == "-o" && i + 1 < args.size())
            out = args[++i];
        else if (in.empty() && args[i] != "-o")
            in = args[i];
        else
            return usage("fmt takes one FILE and an optional -o OUT");
    }
    if (in.empty())
        return usage("fmt takes one FILE and an optional -o OUT");
    Track track;
    std::vector<std::string> problems = load(in, track, nullptr, false);
    for (const std::string& line : problems)
        std::fprintf(stderr, "%s\n", line.c_str());
    if (!problems.empty())
        return INVALID;
    const std::string& target = out.empty() ? in : out;
    std::string error;
    if (!track.saveFile(target.c_str(), &error)) {
        std::fprintf(stderr, "%s\n", error.c_str());
        return INVALID;
    }
    return OK;
}
