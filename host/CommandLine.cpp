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
    return "Usage: kuvo-editor [OPTION]...\n"
           "Edits the animation tracks of a Kuvo scene: the scene in a 3D viewport, its track in the docked\n"
           "Track Editor. Without --scene and --track it opens an untitled copy of the bundled sample, its\n"
           "track playing on loop.\n"
           "\n"
           "Options:\n"
           "  --scene FILE       open this .world (default: the bundled samples/demo.world)\n"
           "  --track FILE       open this .anim (default: an untitled copy of the bundled sample track,\n"
           "                     playing on loop)\n"
           "  --headless         run without a display\n"
           "  --script FILE      replay an automation script (automation.md in the documentation);\n"
           "                     exit 0 when every check held, 1 otherwise\n"
           "  --screenshot FILE  save the main window as PNG after the first frames, then exit\n"
           "  --check-leaks      exit with status 3 when allocations are still alive at exit\n"
           "  --recovery-interval SECONDS\n"
           "                     write a recovery copy of unsaved edits this often (default 30)\n"
           "  --restore-recovery\n"
           "                     restore the newest recovery copy at the start without asking\n"
           "  --discard-recovery\n"
           "                     delete the newest recovery copy at the start without asking\n"
           "                     (without either, a headless run leaves it and says so in the log)\n"
           "  --help             print this text and exit\n"
           "\n"
           "Environment:\n"
           "  KUVO_DATA_DIR      the data folder (icons, translations, samples); default: share/kuvo\n"
           "                     beside the program's folder when installed, else the source folder's data\n"
           "  KUVO_PLUGIN_DIR    the folder to load the track editor module, libtrack_editor.so, from;\n"
           "                     default: the program's folder when it holds the module, else lib/kuvo\n"
           "                     beside the program's folder\n"
           "  KUVO_RECOVERY_DIR  the folder of recovery copies; default: $XDG_STATE_HOME/kuvo/recovery,\n"
           "                     else ~/.local/state/kuvo/recovery\n"
           "  QT_QPA_PLATFORM    the Qt platform to show the window on (--headless sets offscreen)\n"
           "\n"
           "Exit status: 0 success, 1 a failed start or script, 2 usage error, 3 leaks (--check-leaks).\n";
}
