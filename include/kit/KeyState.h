#pragma once

// The state of the mouse buttons and modifier keys, in the manner of the desktop systems' key
// state query: the toolkit records presses and releases from its input handling with SetKeyState,
// and views read them with GetKeyState while they handle an event.

// Virtual key codes the toolkit records.
enum : int {
    VK_LBUTTON = 0x01,
    VK_RBUTTON = 0x02,
    VK_MBUTTON = 0x04,
    VK_SHIFT = 0x10,
    VK_CONTROL = 0x11,
    VK_MENU = 0x12, // alt
};

// Returns a value with the high bit set (0x8000, so negative) while virtualKey (0 to 255) is down,
// and 0 when it is up or the code is out of range.
short GetKeyState(int virtualKey);

// Records that virtualKey (0 to 255) went down or up. The toolkit calls it from its mouse and key
// event handling before it dispatches the event; a code out of range is logged and ignored.
void SetKeyState(int virtualKey, bool down);
