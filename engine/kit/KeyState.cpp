#include "kit/KeyState.h"

#include "kit/jLog.h"

namespace {

constexpr int KEY_COUNT = 256;
constexpr unsigned short DOWN_BIT = 0x8000;

// Only the user-interface thread touches the state.
bool g_down[KEY_COUNT];

bool inRange(int virtualKey)
{
    return virtualKey >= 0 && virtualKey < KEY_COUNT;
}

} // namespace

short GetKeyState(int virtualKey)
{
    if (!inRange(virtualKey) || !g_down[virtualKey])
        return 0;
    return static_cast<short>(DOWN_BIT);
}

void SetKeyState(int virtualKey, bool down)
{
    if (!inRange(virtualKey)) {
        jLog::error("%s:virtual key %d out of range", "SetKeyState", virtualKey);
        return;
    }
    g_down[virtualKey] = down;
}
