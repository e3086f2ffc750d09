#pragma once

#include <string>
#include <vector>

// One line of an automation script, parsed.
struct ScriptCommand {
    enum Verb {
        FRAMES,           // frames N: run N frames of 1/60 s
        IDLE,             // idle SECONDS: handle events without frames for SECONDS of real time
        PRESS,            // press NAME: a toolbar button by icon stem, or a text button by translation key
        KEY,              // key SPEC: a key with modifiers, e.g. ctrl+k, delete, left, space
        CLICK,            // click [@view] X Y
        DCLICK,           // dclick [@view] X Y
        DRAG,             // drag [@view] X1 Y1 X2 Y2 [ctrl|shift]
        WHEEL,            // wheel [@view] X Y NOTCHES [ctrl|shift]
        TYPE,             // type TEXT: into the focused field
        ANSWER,           // answer choose|select|press|find|screenshot|file|ok|cancel|yes|no|color ...: queued
                          // for the next modal dialog
        EXPECT_TITLE,     // expect-title TEXT
        EXPECT_LOG,       // expect-log TEXT
        EXPECT_NO_ERRORS, // expect-no-errors
        SCREENSHOT,       // screenshot PATH
        QUIT,             // quit
    };

    Verb verb = QUIT;
    int line = 0;              // 1-based line in the script
    std::string view;          // CLICK, DCLICK, DRAG, WHEEL: "" for the window, else "lines", "rows", "timebar",
                               // "curves"
    std::vector<float> points; // CLICK/DCLICK: x y; DRAG: x1 y1 x2 y2; WHEEL: x y notches; ANSWER color: r g b a
    std::string text;          // PRESS name, TYPE text, ANSWER kind, EXPECT_* text, SCREENSHOT path
    std::string argument;      // ANSWER choose/select dotted path, press button key, find text, screenshot or
                               // file path
    int count = 0;             // FRAMES
    float seconds = 0.0f;      // IDLE
    int keyCode = 0;           // KEY: the engine key code
    bool ctrl = false;         // KEY, DRAG and WHEEL modifiers
    bool shift = false;
    bool alt = false;
};
