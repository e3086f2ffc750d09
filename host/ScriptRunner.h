#pragma once

#include <deque>
#include <functional>
#include <string>

#include "ScriptCommand.h"

class AutomationScript;
class QWidget;
class UIElement;
class UIRoot;
class jLogBuffer;
struct TrackEditorPluginApi;

// Replays an automation script against the running editor with a fixed frame time of 1/60 s: input
// goes through the toolkit's automation hook (the route of real input), checks compare the editor's
// title and the log. Every failed line is printed as "FILE:LINE: reason".
class ScriptRunner {
public:
    // What the runner drives.
    struct Host {
        UIRoot* root;
        const TrackEditorPluginApi* api;
        UIElement* editor;
        QWidget* mainWindow;
        const jLogBuffer* log; // attached since the start of the run
        std::function<void(float)> frame;
    };

    static constexpr float FRAME_TIME = 1.0f / 60.0f;

    explicit ScriptRunner(const Host& host);

    // Runs every command (until quit); name stands for the script in messages. Returns 0 when every
    // command and check held and no dialog answer was left over, 1 otherwise.
    int run(const AutomationScript& script, const std::string& name);

private:
    // Runs one command; false with reason when it failed.
    bool execute(const ScriptCommand& c, std::string& reason);
    bool press(const std::string& name, std::string& reason);
    bool pointer(const ScriptCommand& c, std::string& reason);
    bool key(const ScriptCommand& c, std::string& reason);
    bool answer(const ScriptCommand& c, std::string& reason);
    bool expect_title(const std::string& text, std::string& reason) const;
    bool expect_no_errors(std::string& reason) const;
    bool screenshot(const std::string& path, std::string& reason) const;
    void frames(int count);
    // Runs the event loop (timers, not frames) for seconds of real time.
    void idle(float seconds);
    // Forgets the lines of the answers the dialogs have taken.
    void track_answers();

    Host m_host;
    // Script lines of the answers still queued, oldest first.
    std::deque<int> m_answer_lines;
};
