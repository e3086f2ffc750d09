#include "CommandLine.h"

#include <cstring>

namespace {

struct FileOption {
    const char* name;
    std::string HostOptions::*field;
};

const FileOption k_file_options[] = {
    {"--scene", &HostOptions::scene},
    {"--track", &HostOptions::track},
    {"--script", &HostOptions::script},
    {"--screenshot", &HostOptions::screenshot},
};

struct SwitchOption {
    const char* name;
    bool HostOptions::*field;
};

const SwitchOption k_switches[] = {
    {"--headless", &HostOptions::headless},
    {"--check-leaks", &HostOptions::checkLeaks},
    {"--help", &HostOptions::help},
};

} // namespace

bool CommandLine::parse(int argc, const char* const* argv, HostOptions& options, std::string& error)
{
    options = HostOptions();
    error.clear();
    for (int i = 1; i < argc; ++i) {
        const char* arg = argv[i];
        bool known = false;
        for (const SwitchOption& s : k_switches) {
            if (std::strcmp(arg, s.name) != 0)
                continue;
            if (options.*s.field) {
                error = std::string(arg) + " is given twice";
                return false;
            }
            options.*s.field = known = true;
        }
        for (const FileOption& f : k_file_options) {
            if (std::strcmp(arg, f.name) != 0)
                continue;
            known = true;
            if (i + 1 >= argc || argv[i + 1][0] == '\0' || std::strncmp(argv[i + 1], "--", 2) == 0) {
                error = std::string(arg) + " needs a FILE";
                return false;
            }
            if (!(options.*f.field).empty()) {
                error = std::string(arg) + " is given twice";
                return false;
            }
            options.*f.field = argv[++i];
        }
        if (!known) {
            error = std::string("unknown argument \"") + arg + "\"";
            return false;
        }
    }
    return true;
}

const char* CommandLine::usage()
{
    return "usage: kuvo-editor [--scene FILE] [--track FILE] [--headless] [--script FILE]\n"
           "                   [--screenshot FILE] [--check-leaks]\n"
           "  --scene FILE       open this .world (default: the bundled data/samples/demo.world)\n"
           "  --track FILE       open this .anim (default: the bundled sample track, playing on loop)\n"
           "  --headless         run without a display\n"
           "  --script FILE      replay an automation script (docs/automation.md); exit 0 when every\n"
           "                     check held, 1 otherwise\n"
           "  --screenshot FILE  save the main window as PNG after the first frames, then exit\n"
           "  --check-leaks      exit with status 3 when allocations are still alive at exit\n"
           "  --help             print this text\n"
           "The track editor module is loaded from libtrack_editor.so beside the program, or from the\n"
           "folder named by KUVO_PLUGIN_DIR.\n";
}
