#include <cstdio>
#include <string>

#include "AnimCommand.h"
#include "anim/Track.h"
#include "kit/jString.h"

namespace {

const char* kindName(int kind)
{
    static const char* const names[] = {"toggle", "float",  "double", "color",       "vec3",
                                        "dvec3",  "opaque", "track",  "string-file", "string-material"};
    return kind >= 0 && kind < 10 ? names[kind] : "?";
}

// Describes what a parameter is bound to, as a user reads it.
std::string binding(const TrackParameter& p)
{
    if (p.getMaterialName().nempty()) {
        std::string text = std::string("material \"") + p.getMaterialName().c_str() + "\" tag \"" +
                           p.getMaterialTag().c_str() + "\"";
        return p.isMaterialHierarchy() ? text + " with derived materials" : text;
    }
    if (p.getNodeID() != -1 || p.getNodeName().nempty()) {
        std::string text = "node " + std::to_string(p.getNodeID()) + " \"" + p.getNodeName().c_str() + "\"";
        if (p.getInternalNodeID() != -1 || p.getInternalNodeName().nempty())
            text += " internal " + std::to_string(p.getInternalNodeID()) + " \"" + p.getInternalNodeName().c_str() +
                    "\"";
        return text;
    }
    const TrackReg* reg = p.getReg();
    if (reg && reg->getBinding() == TrackReg::BIND_GLOBAL)
        return "world";
    if (reg && reg->getBinding() == TrackReg::BIND_TRACK)
        return "nested track";
    return "unbound";
}

} // namespace

int AnimCommand::info(const std::vector<std::string>& args)
{
    if (args.size() != 1)
        return usage("info takes one FILE");
    Track track;
    std::vector<std::string> problems = load(args[0], track, nullptr, false);
    for (const std::string& line : problems)
        std::fprintf(stderr, "%s\n", line.c_str());
    if (!problems.empty())
        return INVALID;
    std::printf("file: %s\n", args[0].c_str());
    std::printf("range: %s .. %s s\n", ToString(track.getBeginTime()).c_str(), ToString(track.getEndTime()).c_str());
    std::printf("loop: %s\n", track.isLoop() ? "yes" : "no");
    std::printf("parameters: %d\n", track.getNumParameters());
    for (int i = 0; i < track.getNumParameters(); ++i) {
        const TrackParameter* p = track.getParameter(i);
        std::printf("  %d: kind %d (%s) %s \"%s\", %s, %d key%s%s\n", i, p->getType(), kindName(p->getType()),
                    p->getTypeName().c_str(), p->getName().c_str(), binding(*p).c_str(), p->getNumKeys(),
                    p->getNumKeys() == 1 ? "" : "s", p->isEnabled() ? "" : ", disabled");
    }
    return OK;
}
