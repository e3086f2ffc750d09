// kuvo-editor: the host editor application. See CommandLine::usage() and docs/automation.md.
#include <QApplication>
#include <cstdio>

#include "CommandLine.h"
#include "EditorApp.h"
#include "LeakCheck.h"

int main(int argc, char** argv)
{
    // What the engine allocated when its library loaded lives for the whole process.
    jMemSnapshot baseline = jMemRegistry::snapshot();
    HostOptions options;
    std::string error;
    if (!CommandLine::parse(argc, argv, options, error)) {
        std::fprintf(stderr, "kuvo-editor: %s\n%s", error.c_str(), CommandLine::usage());
        return CommandLine::USAGE_STATUS;
    }
    if (options.help) {
        std::fputs(CommandLine::usage(), stdout);
        return 0;
    }
    // Qt picks its platform when the application starts, so the choice must come first.
    if (options.headless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    int status = 0;
    {
        QApplication app(argc, argv);
        EditorApp editor(options);
        status = editor.run();
    }
    return LeakCheck::finish(status, options.checkLeaks, baseline);
}
