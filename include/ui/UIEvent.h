#pragma once

#include "kit/SignalSlot.h"

class UIElement;

// The toolkit's key codes. Letters and digits are their upper-case character codes ('A' = 65,
// '0' = 48), space is 32; the other keys have codes from 256 up.
enum UI_KEY_CODE : int {
    UI_KEY_NONE = 0,
    UI_KEY_SPACE = 32,
    UI_KEY_ESCAPE = 256,
    UI_KEY_ENTER = 257,
    UI_KEY_TAB = 258,
    UI_KEY_BACKSPACE = 259,
    UI_KEY_DELETE = 260,
    UI_KEY_INSERT = 261,
    UI_KEY_HOME = 262,
    UI_KEY_END = 263,
    UI_KEY_PAGE_UP = 264,
    UI_KEY_PAGE_DOWN = 265,
    UI_KEY_LEFT = 266, // step back
    UI_KEY_RIGHT = 267, // step forward
    UI_KEY_UP = 268,
    UI_KEY_DOWN = 269,
    UI_KEY_F1 = 290, // F1 to F12 follow in order
};

// Mouse buttons as carried by UIEventMouse::button; buttons is a mask of the same values as bits
// (1 << button).
enum UI_MOUSE_BUTTON : int {
    UI_MOUSE_NONE = 0,
    UI_MOUSE_LEFT = 1,
    UI_MOUSE_RIGHT = 2,
    UI_MOUSE_MIDDLE = 3,
};

// Modifier flags of input events.
enum UI_MODIFIER : int {
    UI_MOD_SHIFT = 1,
    UI_MOD_CTRL = 2,
    UI_MOD_ALT = 4,
};

// A mouse event in screen coordinates. button is the button that changed (press, release,
// double click) or UI_MOUSE_NONE for moves; buttons holds every button held after the event.
struct UIEventMouse {
    int x = 0;
    int y = 0;
    int button = UI_MOUSE_NONE;
    int buttons = 0;
    int modifiers = 0;
    int wheel = 0; // wheel notches, positive away from the user

    bool isLeft() const { return button == UI_MOUSE_LEFT; }
    bool isRight() const { return button == UI_MOUSE_RIGHT; }
    // True while the left button is held (also for moves).
    bool isLeftDown() const { return (buttons & (1 << UI_MOUSE_LEFT)) != 0; }
    // True when the modifier that extends a selection is held: Ctrl or Shift.
    bool isMultiSelect() const { return (modifiers & (UI_MOD_CTRL | UI_MOD_SHIFT)) != 0; }
};

// A key press: the toolkit key code (UI_KEY_CODE) and the modifiers held.
struct UIEventKey {
    int key = UI_KEY_NONE;
    int modifiers = 0;

    bool isCtrl() const { return (modifiers & UI_MOD_CTRL) != 0; }
    bool isShift() const { return (modifiers & UI_MOD_SHIFT) != 0; }
    bool isAlt() const { return (modifiers & UI_MOD_ALT) != 0; }
};

// A value, text, selection or size changed. changed is 1 when the value differs from before;
// byUser is 1 when the change came from the user's input rather than from a setter.
struct UIEventChanged {
    int changed = 1;
    int byUser = 1;
};

// Keyboard focus was gained (focused true) or lost.
struct UIEventFocus {
    bool focused = false;
};

// The slot of one event kind: holds one handler; assigning a new one replaces it.
template <class Event>
using UISlot = Function<void(const Event*, UIElement*)>;
// The slot of an event without arguments (an edit committed).
using UISlotVoid = Function<void()>;
