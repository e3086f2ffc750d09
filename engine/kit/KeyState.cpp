#include "kit/KeyState.h"

#include <array>

namespace {

// One flag per virtual key; only the toolkit's input thread writes it.
std::array<bool, 256>& key_table()
{
    static std::array<bool, 256> table{};
    return table;
}

} // namespace

short GetKeyState(int vk)
{
    if (vk < 0 || vk > 255)
        return 0;
    return key_table()[vk] ? static_cast<short>(0x8000) : 0;
}

void SetKeyState(int vk, bool down)
{
    if (vk < 0 || vk > 255)
        return;
    key_table()[vk] = down;
}
