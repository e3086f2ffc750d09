#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "AnimCommand.h"
#include "kit/jLog.h"

namespace {

int runVerb(const std::string& verb, const std::vector<std::string>& args)
{
    if (verb == "info")
        return AnimCommand::info(args);
    if (verb == "validate")
        return AnimCommand::validate(args);
    if (verb == "fmt")
        return AnimCommand::fmt(args);
    if (verb == "eval")
        return AnimCommand::eval(args);
    if (verb == "import-gltf")
        return AnimCommand::importGltf(args);
    if (verb == "export-gltf")
        return AnimCommand::exportGltf(args);
    if (verb == "-h" || verb == "--help" || verb == "help")
        return AnimCommand::help();
    return AnimCommand::usage("unknown verb \"" + verb + "\"");
}

} // namespace

int main(int argc, char** argv)
{
    // Problems are printed by the verbs in the FILE:LINE:COLUMN form; the engine's own log lines
    // would repeat them.
    jLog::setStderr(false);
    if (argc < 2)
        return AnimCommand::usage("");
    int status = runVerb(argv[1], std::vector<std::string>(argv + 2, argv + argc));
    // Output that went into a full disk or a closed pipe is lost: the verb did not do its job.
    if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
        std::fprintf(stderr, "kuvo-anim: the output cannot be written: %s\n", std::strerror(errno));
        return status == AnimCommand::OK ? AnimCommand::INVALID : status;
    }
    return status;
}
