#pragma once

#include "kit/jString.h"

// The desktop's clipboard, as plain text, so that data moves between editor windows and into any
// text editor.
class Clipboard {
public:
    // The clipboard's text; empty when it holds none (or there is no application yet).
    static jString getText();
    // Puts text on the clipboard; nothing without an application.
    static void setText(const jString& text);
};
