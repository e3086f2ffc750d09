#include "kit/KeyState.h"

#include "support/Scenario.h"

using KeyStateTest = Scenario;

// Track panels read buttons and modifiers while they handle a click: a key reads as down (high bit
// set) only while it is, and only that key; a code out of range is refused and reads as up.
TEST_F(KeyStateTest, OnlyTheKeyThatIsDownReadsAsDown)
{
    for (int key : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON, VK_SHIFT, VK_CONTROL, VK_MENU}) {
        SetKeyState(key, true);
        EXPECT_EQ(static_cast<unsigned short>(GetKeyState(key)), 0x8000u) << "key " << key;
        EXPECT_EQ(GetKeyState(key == VK_SHIFT ? VK_CONTROL : VK_SHIFT), 0) << "key " << key;
        SetKeyState(key, false);
        EXPECT_EQ(GetKeyState(key), 0) << "key " << key;
    }
    SetKeyState(256, true);
    expectLogged("SetKeyState:virtual key 256 out of range");
    EXPECT_EQ(GetKeyState(256), 0);
}
