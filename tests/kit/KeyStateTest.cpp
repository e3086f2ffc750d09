#include "kit/KeyState.h"

#include "support/Scenario.h"

using KeyStateTest = Scenario;

TEST_F(KeyStateTest, DownKeysHaveTheHighBitSet)
{
    SetKeyState(VK_KEY_LBUTTON, true);
    SetKeyState(VK_KEY_CONTROL, false);
    EXPECT_NE(GetKeyState(1) & 0x8000, 0);
    EXPECT_LT(GetKeyState(1), 0);
    EXPECT_EQ(GetKeyState(0x11), 0);
    SetKeyState(VK_KEY_LBUTTON, false);
    EXPECT_EQ(GetKeyState(1), 0);
}

TEST_F(KeyStateTest, CodesOutsideTheTableAreIgnored)
{
    SetKeyState(-1, true);
    SetKeyState(256, true);
    EXPECT_EQ(GetKeyState(-1), 0);
    EXPECT_EQ(GetKeyState(256), 0);
}
