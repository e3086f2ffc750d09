#pragma once

// A rectangle on the screen, in pixels.
struct UIRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// Placement helpers for top-level widgets.
class Widget {
public:
    // Returns a rectangle of the given size centred on the primary screen's free area (the size
    // is kept even when it exceeds the screen).
    static UIRect MakeCenter(int width, int height);
};
