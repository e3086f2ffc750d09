#include "ui/SettingsPanel.h"

#include "ModuleFixture.h"
#include "anim/Track.h"

using SettingsPanelTest = ModuleFixture;

// The fields show the track's limits and keep them apart, the start never below zero.
TEST_F(SettingsPanelTest, FieldsShowTheTrackTimesAndKeepTheStartBelowTheEnd)
{
    auto* panel = make<SettingsPanel>(root());
    engine()->setBeginTime(2.0f);
    engine()->setEndTime(3.0f);
    EXPECT_EQ(panel->getMinTime(), 2.0f);
    EXPECT_EQ(panel->getMaxTime(), 3.0f);

    panel->setMinTime(5.0f);
    EXPECT_FLOAT_EQ(engine()->getBeginTime(), 2.999999f);
    panel->setMinTime(-1.0f);
    EXPECT_EQ(engine()->getBeginTime(), 0.0f);

    panel->setMinTime(2.0f);
    panel->setMaxTime(1.0f);
    EXPECT_FLOAT_EQ(engine()->getEndTime(), 2.000001f);
    panel->setMaxTime(100.0f);
    EXPECT_EQ(engine()->getEndTime(), 100.0f);
    destroy(panel);
}
