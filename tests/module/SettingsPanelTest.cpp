#include "ui/SettingsPanel.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"

class SettingsPanelTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_panel = make<SettingsPanel>(root());
        track()->setBeginTime(2.0f);
        track()->setEndTime(3.0f);
    }
    void TearDown() override
    {
        destroy(m_panel);
        ModuleFixture::TearDown();
    }
    Track* track() const { return AppData::get()->getTrack()->getEngineTrack(); }
    SettingsPanel* panel() const { return m_panel; }

private:
    SettingsPanel* m_panel = nullptr;
};

TEST_F(SettingsPanelTest, StartStaysBelowTheEndAndAboveZero)
{
    panel()->setMinTime(5.0f);
    EXPECT_FLOAT_EQ(track()->getBeginTime(), 2.999999f);
    panel()->setMinTime(-1.0f);
    EXPECT_EQ(track()->getBeginTime(), 0.0f);
}

TEST_F(SettingsPanelTest, EndStaysAboveTheStart)
{
    panel()->setMaxTime(1.0f);
    EXPECT_FLOAT_EQ(track()->getEndTime(), 2.000001f);
    panel()->setMaxTime(100.0f);
    EXPECT_EQ(track()->getEndTime(), 100.0f);
}

TEST_F(SettingsPanelTest, FieldsShowTheTrackTimes)
{
    EXPECT_EQ(panel()->getMinTime(), 2.0f);
    EXPECT_EQ(panel()->getMaxTime(), 3.0f);
}
