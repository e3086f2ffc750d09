#include "ui/UITrackLine.h"

#include "LinePanelFixture.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterToggle.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterToggle.h"
#include "ui/UITrackLineColor.h"

using UITrackLineTest = LinePanelFixture;

TEST_F(UITrackLineTest, SelectedColourKeyIsWhite)
{
    loadPulse();
    const int x = xOf(1.0f), y = ROW + 17;
    EXPECT_TRUE(near(pixel(x, y), vec4(1.0f, 0.8f, 0.4f, 1.0f))) << "the key's own colour";
    click(1, 1);
    EXPECT_TRUE(near(pixel(x, y), vec4(1.0f, 1.0f, 1.0f, 1.0f)));
    const vec4 bulb = pixel(xOf(0.5f), 17); // a float key stays grey until selected
    EXPECT_TRUE(near(bulb, vec4(0.4f, 0.4f, 0.4f, 1.0f)));
}

TEST_F(UITrackLineTest, EmptyStringKeyHasNoLabelAndPointsDown)
{
    loadPulse();
    FParameterStringFile* mesh = AppData::get()->getTrack()->createParameterStringFile("Mesh");
    mesh->createKey(0.5f, jString());
    mesh->createKey(1.5f, jString("meshes/post.mesh"));
    mesh->sortKeys();
    const int top = 2 * ROW;
    const vec4 grey(0.4f, 0.4f, 0.4f, 1.0f);
    const int empty = xOf(0.5f), named = xOf(1.5f);
    // The empty key's mark is wide at the top and narrow at the bottom; the named one the reverse.
    EXPECT_TRUE(near(pixel(empty - 5, top + 9), grey));
    EXPECT_FALSE(near(pixel(empty - 5, top + 20), grey));
    EXPECT_FALSE(near(pixel(named - 5, top + 9), grey));
    EXPECT_TRUE(near(pixel(named - 5, top + 20), grey));
    EXPECT_EQ(canvas()->getTextWidth(mesh->getKey(0)->getLineKey()->getTextId()), 0);
    EXPECT_GT(canvas()->getTextWidth(mesh->getKey(1)->getLineKey()->getTextId()), 0);
    EXPECT_EQ(mesh->getKey(1)->getLineKey()->getText(), "post.mesh");
}

TEST_F(UITrackLineTest, SwitchMarksUseTheLinesLightAndDarkShades)
{
    loadPulse();
    FParameterToggle* lamp = AppData::get()->getTrack()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->createKey(1.5f, true);
    lamp->sortKeys();
    const UITrackLine* line = lamp->getLine();
    EXPECT_TRUE(near(pixel(xOf(0.5f), 2 * ROW + 17), line->getDarkColor()));
    EXPECT_TRUE(near(pixel(xOf(1.5f), 2 * ROW + 17), line->getLightColor()));
    EXPECT_FALSE(near(line->getDarkColor(), line->getLightColor()));
}

TEST_F(UITrackLineTest, LineShadesAreClamped)
{
    UITrackLine line;
    line.setDirty(false);
    line.setColor(vec4(0.9f, 0.1f, 0.5f, 0.3f));
    EXPECT_TRUE(line.isDirty());
    EXPECT_TRUE(near(line.getLightColor(), vec4(1.0f, 0.35f, 0.75f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.225f, 0.025f, 0.125f, 1.0f), 1e-6f));
    EXPECT_EQ(line.getLightColor().w, 1.0f);
    line.setColor(vec4(-1.0f, 5.0f, 0.0f, 1.0f));
    EXPECT_TRUE(near(line.getLightColor(), vec4(0.0f, 1.0f, 0.25f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.0f, 1.0f, 0.0f, 1.0f), 1e-6f));
}

TEST_F(UITrackLineTest, ColourStripFollowsTheAnimatedColour)
{
    loadPulse();
    auto* strip = static_cast<UITrackLineColor*>(single(1)->getLine());
    strip->setStripWidth(0);
    strip->refreshStrip(0.5f, 0.0f);
    EXPECT_EQ(strip->getStripWidth(), 0);
    strip->setStripWidth(5);
    strip->refreshStrip(0.5f, 0.0f);
    ASSERT_EQ(strip->getStripWidth(), 5);
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    for (int i = 0; i < 5; ++i) {
        bool found = false;
        EXPECT_TRUE(near(strip->getStripPixel(i), glow->getTrackValue(0.5f * float(i), found), 1e-6f)) << i;
    }
    EXPECT_TRUE(near(strip->getStripPixel(2), vec4(1.0f, 0.8f, 0.4f, 1.0f), 1e-6f));
    EXPECT_FALSE(near(strip->getStripPixel(1), strip->getStripPixel(2)));
}

TEST_F(UITrackLineTest, DoubleClickOnASwitchKeyFlipsIt)
{
    loadPulse();
    FParameterToggle* lamp = AppData::get()->getTrack()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->sortKeys();
    lamp->applyKeys();
    redraw();
    clearMessages();
    const UIEventMouse e = event(xOf(0.5f), 2 * ROW + 15, 0);
    EXPECT_TRUE(panel()->onMouseDClick(&e));
    EXPECT_TRUE(static_cast<FKeyToggle*>(lamp->getKey(0))->getValue());
    bool found = false;
    EXPECT_EQ(lamp->engine_parameter()->getTrackValue(0.5f, found), 1);
    EXPECT_EQ(messages(), std::vector<int>{197});
}

