#include "kit/KeyState.h"

#include "support/Scenario.h"

using KeyStateTest = Scenario;

TEST_F(KeyStateTest, HighBitIsSetOnlyWhileTheKeyIsDown)
{
    for (int key : {VK_LBUTTON, VK_RBUTTON, VK_MBUTTON, VK_SHIFT, VK_CONTROL, VK_MENU}) {
        EXPECT_EQ(GetKeyState(key), 0) << "key " << key;
        SetKeyState(key, true);
        EXPECT_LT(GetKeyState(key), 0) << "key " << key;
        EXPECT_EQ(static_cast<unsigned short>(GetKeyState(key)) & 0x8000u, 0x8000u);
        SetKeyState(key, false);
        EXPECT_EQ(GetKeyState(key), 0) << "key " << key;
    }
}

TEST_F(KeyStateTest, KeysAreIndependent)
{
    SetKeyState(VK_SHIFT, true);
    EXPECT_EQ(GetKeyState(VK_CONTROL), 0);
    EXPECT_EQ(GetKeyState(VK_LBUTTON), 0);
    EXPECT_LT(GetKeyState(VK_SHIFT), 0);
    SetKeyState(VK_SHIFT, false);
}

TEST_F(KeyStateTest, CodesOutOfRangeAreRejected)
{
    EXPECT_EQ(GetKeyState(-1), 0);
    EXPECT_EQ(GetKeyState(256), 0);
    SetKeyState(300, true);
    expectLogged("SetKeyState:virtual key 300 out of range");
    EXPECT_EQ(GetKeyState(300), 0);
}
