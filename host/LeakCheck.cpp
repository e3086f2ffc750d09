#include "LeakCheck.h"

#include <cstdio>
#include <map>
#include <sstream>
#include <vector>

#include "kit/jLog.h"

namespace {

// The growth per tag, read from the snapshot's "tag: +N" lines.
std::map<std::string, size_t> growth(const jMemSnapshot& baseline)
{
    std::map<std::string, size_t> grown;
    std::istringstream lines(jMemRegistry::snapshot().changesSince(baseline));
    std::string line;
    while (std::getline(lines, line)) {
        size_t mark = line.rfind(": +");
        if (mark != std::string::npos)
            grown[line.substr(0, mark)] = std::stoul(line.substr(mark + 3));
    }
    return grown;
}

} // namespace

int LeakCheck::exitStatus(int runStatus, size_t leaked, bool checking)
{
    return checking && leaked > 0 ? LEAK_STATUS : runStatus;
}

size_t LeakCheck::countSince(const jMemSnapshot& baseline)
{
    size_t total = 0;
    for (const auto& [tag, n] : growth(baseline))
        total += n;
    return total;
}

std::string LeakCheck::reportSince(const jMemSnapshot& baseline)
{
    std::map<std::string, size_t> grown = growth(baseline);
    std::vector<std::string> lines;
    std::istringstream report(jMemRegistry::leakReport());
    for (std::string line; std::getline(report, line);)
        lines.push_back(line);
    // The report runs oldest first, so the newest allocations of a tag are its last lines.
    std::vector<bool> keep(lines.size(), false);
    for (size_t i = lines.size(); i-- > 0;) {
        auto tag = grown.find(lines[i].substr(0, lines[i].find(" (")));
        if (tag != grown.end() && tag->second > 0) {
            keep[i] = true;
            --tag->second;
        }
    }
    std::string text;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (keep[i])
            text += lines[i] + "\n";
    }
    return text;
}

int LeakCheck::finish(int runStatus, bool checking, const jMemSnapshot& baseline)
{
    size_t leaked = countSince(baseline);
    if (leaked > 0) {
        std::fprintf(stderr, "kuvo-editor: %zu allocations still alive at exit:\n%s", leaked,
                     reportSince(baseline).c_str());
        if (checking)
            jLog::error("%s:%zu allocations leaked", "LeakCheck::finish", leaked);
    }
    return exitStatus(runStatus, leaked, checking);
}
