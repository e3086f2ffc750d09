#include <string>
#include <vector>

#include "AnimCommand.h"
#include "kit/jLog.h"

int main(int argc, char** argv)
{
    // Problems are printed by the verbs in the FILE:LINE:COLUMN form; the engine's own log lines
    // would repeat them.
    jLog::setStderr(false);
    if (argc < 2)
        return AnimCommand::usage("");
    std::string verb = argv[1];
    std::vector<std::string> args(argv + 2, argv + argc);
    if (verb == "info")
        return AnimCommand::info(args);
    if (verb == "validate")
        return AnimCommand::validate(args);
    if (verb == "fmt")
        return AnimCommand::fmt(args);
    if (verb == "eval")
        return AnimCommand::eval(args);
    if (verb == "-h" || verb == "--help" || verb == "help")
        return AnimCommand::help();
    return AnimCommand::usage("unknown verb \"" + verb + "\"");
}
