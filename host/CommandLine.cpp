#include "CommandLine.h"

#include <cstdlib>
#include <cstring>

namespace {

struct FileOption {
    const char* name;
    std::string HostOptions::*field;
    const char* what; // the argument's name in messages
};

const FileOption k_file_options[] = {
    {"--scene", &HostOptions::scene, "a FILE"},
    {"--track", &HostOptions::track, "a FILE"},
    {"--script", &HostOptions::script, "a FILE"},
    {"--screenshot", &HostOptions::screenshot, "a FILE"},
    {"--recovery-interval", &HostOptions::recoveryInterval, "SECONDS"},
};

struct SwitchOption {
    const char* name;
    bool HostOptions::*field;
};

const SwitchOption k_switches[] = {
    {"--restore-recovery", &HostOptions::restoreRecovery},
    {"--discard-recovery", &HostOptions::discardRecovery},
    {"--headless", &HostOptions::headless},
    {"--check-leaks", &HostOptions::checkLeaks},
    {"--help", &HostOptions::help},
};

// Checks the recovery options once every argument is read.
bool check_recovery(HostOptions& options, std::string& error)
{
    if (options.restoreRecovery && options.discardRecovery) {
        error = "--restore-recovery and --discard-recovery exclude each other";
        return false;
    }
    if (options.recoveryInterval.empty())
        return true;
    char* end = nullptr;
    options.recoverySeconds = std::strtod(options.recoveryInterval.c_str(), &end);
    if (*end == '\0' && options.recoverySeconds > 0.0 && options.recoverySeconds <= 86400.0)
        return true;
    error = "--recovery-interval needs a number of seconds above 0, not \"" + options.recoveryInterval + "\"";
    return false;
}

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
                error = std::string(arg) + " needs " + f.what;
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
    return check_recovery(options, error);
}

const char* CommandLine::usage()
{
    return "usage: kuvo-editor [--scene FILE] [--track FILE] [--headless] [--script FILE]\n"
           "                   [--screenshot FILE] [--check-leaks] [--recovery-interval SECONDS]\n"
           "                   [--restore-recovery | --discard-recovery]\n"
           "  --scene FILE       open this .world (default: the bundled data/samples/demo.world)\n"
           "  --track FILE       open this .anim (default: an untitled copy of the bundled sample track,\n"
           "                     playing on loop)\n"
           "  --headless         run without a display\n"
           "  --script FILE      replay an automation script (docs/automation.md); exit 0 when every\n"
           "                     check held, 1 otherwise\n"
           "  --screenshot FILE  save the main window as PNG after the first frames, then exit\n"
           "  --check-leaks      exit with status 3 when allocations are still alive at exit\n"
           "  --recovery-interval SECONDS\n"
           "                     write a recovery copy of unsaved edits this often (default 30)\n"
           "  --restore-recovery restore the newest recovery copy at the start without asking\n"
           "  --discard-recovery delete the newest recovery copy at the start without asking\n"
           "                     (without either, a headless run leaves it and says so in the log)\n"
           "  --help             print this text\n"
           "The track editor module is loaded from libtrack_editor.so beside the program, or from the\n"
           "folder named by KUVO_PLUGIN_DIR. Recovery copies are kept in KUVO_RECOVERY_DIR, else in\n"
           "$XDG_STATE_HOME/kuvo/recovery, else in ~/.local/state/kuvo/recovery.\n";
}
