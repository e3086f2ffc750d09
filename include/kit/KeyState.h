#pragma once

// Mouse-button and modifier state as the toolkit last saw it. The codes are the usual virtual-key
// numbers: 1 the left mouse button, 2 the right one, 4 the middle one, 0x10 shift, 0x11 control,
// 0x12 alt.
enum : int {
    VK_KEY_LBUTTON = 0x01,
    VK_KEY_RBUTTON = 0x02,
    VK_KEY_MBUTTON = 0x04,
    VK_KEY_SHIFT = 0x10,
    VK_KEY_CONTROL = 0x11,
    VK_KEY_MENU = 0x12,
};

// Returns the state of a virtual key: the high bit is set (the value is negative) while it is
// down, 0 when it is up or when vk is outside 0..255.
short GetKeyState(int vk);
// Records that a virtual key went down or up; codes outside 0..255 are ignored.
void SetKeyState(int vk, bool down);
