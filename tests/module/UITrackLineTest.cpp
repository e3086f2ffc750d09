#include "ui/UITrackLine.h"

#include "LinePanelFixture.h"
#include "TrackEditorMsg.h"
#include "anim/TrackParameterColor.h"
#include "data/FKeyColor.h"
#include "data/FKeyString.h"
#include "data/FParameterColor.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterStringMaterial.h"
#include "data/FParameterToggle.h"
#include "ui/UIAutomation.h"
#include "ui/UITrackLineColor.h"

using UITrackLineTest = LinePanelFixture;

// A mark shows its key: a colour key its colour (white once selected, a float key stays grey), a switch
// key the line's dark or light shade, an empty string key no label and a mark pointing down.
TEST_F(UITrackLineTest, MarksShowTheirKeysValueAndSelection)
{
    loadPulse();
    EXPECT_TRUE(near(pixel(xOf(1.0f), ROW + 17), vec4(1.0f, 0.8f, 0.4f, 1.0f)));
    click(1, 1);
    EXPECT_TRUE(near(pixel(xOf(1.0f), ROW + 17), vec4(1.0f, 1.0f, 1.0f, 1.0f)));
    EXPECT_TRUE(isGrey(pixel(xOf(0.5f), 17), 0.4f));

    FParameterToggle* lamp = doc()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->createKey(1.5f, true);
    lamp->sortKeys();
    const UITrackLine* line = lamp->getLine();
    EXPECT_TRUE(near(pixel(xOf(0.5f), 2 * ROW + 17), line->getDarkColor()));
    EXPECT_TRUE(near(pixel(xOf(1.5f), 2 * ROW + 17), line->getLightColor()));
    EXPECT_FALSE(near(line->getDarkColor(), line->getLightColor()));

    FParameterStringFile* mesh = doc()->createParameterStringFile("Mesh");
    mesh->createKey(0.5f, jString());
    mesh->createKey(1.5f, jString("meshes/post.mesh"));
    mesh->sortKeys();
    const int top = 3 * ROW, empty = xOf(0.5f), named = xOf(1.5f);
    EXPECT_TRUE(isGrey(pixel(empty - 5, top + 9), 0.4f));
    EXPECT_FALSE(isGrey(pixel(empty - 5, top + 20), 0.4f));
    EXPECT_FALSE(isGrey(pixel(named - 5, top + 9), 0.4f));
    EXPECT_TRUE(isGrey(pixel(named - 5, top + 20), 0.4f));
    EXPECT_EQ(canvas()->getTextWidth(mesh->getKey(0)->getLineKey()->getTextId()), 0);
    EXPECT_EQ(mesh->getKey(1)->getLineKey()->getText(), "post.mesh");
}

// A line's light and dark shades are clamped to the displayable range; a colour line's strip shows
// the colour the track plays at each of its pixels.
TEST_F(UITrackLineTest, LineShadesAreClampedAndTheColourStripFollowsTheTrack)
{
    UITrackLine line;
    line.setColor(vec4(0.9f, 0.1f, 0.5f, 0.3f));
    EXPECT_TRUE(near(line.getLightColor(), vec4(1.0f, 0.35f, 0.75f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.225f, 0.025f, 0.125f, 1.0f), 1e-6f));
    EXPECT_EQ(line.getLightColor().w, 1.0f);
    line.setColor(vec4(-1.0f, 5.0f, 0.0f, 1.0f));
    EXPECT_TRUE(near(line.getLightColor(), vec4(0.0f, 1.0f, 0.25f, 1.0f), 1e-6f));
    EXPECT_TRUE(near(line.getDarkColor(), vec4(0.0f, 1.0f, 0.0f, 1.0f), 1e-6f));

    loadPulse();
    auto* strip = static_cast<UITrackLineColor*>(single(1)->getLine());
    strip->setStripWidth(5);
    strip->refreshStrip(0.5f, 0.0f);
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    for (int i = 0; i < 5; ++i) {
        bool found = false;
        EXPECT_TRUE(near(strip->getStripPixel(i), glow->getTrackValue(0.5f * float(i), found), 1e-6f)) << i;
    }
    EXPECT_TRUE(near(strip->getStripPixel(2), vec4(1.0f, 0.8f, 0.4f, 1.0f), 1e-6f));
}

// A double click edits its key into the engine and posts TRACK_MSG_KEYS_CHANGED: a switch flips, a
// material name is cleared, a file key takes the chosen file relative to the data folder; a cancel
// changes nothing.
TEST_F(UITrackLineTest, DoubleClickEditsSwitchMaterialAndFileKeys)
{
    loadPulse();
    FParameterToggle* lamp = doc()->createParameterToggle("Lamp");
    lamp->createKey(0.5f, false);
    lamp->applyKeys();
    FParameterStringMaterial* look = doc()->createParameterStringMaterial("Look");
    look->createKey(0.5f, jString("metal"));
    look->applyKeys();
    FParameterStringFile* mesh = doc()->createParameterStringFile("Mesh");
    mesh->createKey(0.5f, jString("meshes/old.mesh"));
    mesh->applyKeys();
    redraw();
    clearMessages();
    EXPECT_TRUE(dclick(xOf(0.5f), 2 * ROW + 15));
    EXPECT_TRUE(static_cast<FKeyToggle*>(lamp->getKey(0))->getValue());
    bool found = false;
    EXPECT_EQ(lamp->engine_parameter()->getTrackValue(0.5f, found), 1);
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_KEYS_CHANGED});
    dclick(xOf(0.5f), 3 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(look->getKey(0))->getValue(), "");
    EXPECT_EQ(look->engine_parameter()->getKey(0).value, "");
    EXPECT_TRUE(look->getKey(0)->getLineKey()->isEmptyMark());
    root()->getAutomation()->answerFile((std::string(KUVO_DATA_DIR) + "/meshes/new.mesh").c_str());
    dclick(xOf(0.5f), 4 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(mesh->getKey(0))->getValue(), "meshes/new.mesh");
    EXPECT_EQ(mesh->engine_parameter()->getKey(0).value, "meshes/new.mesh");
    EXPECT_EQ(mesh->getKey(0)->getLineKey()->getText(), "new.mesh");
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_KEYS_CHANGED, TRACK_MSG_KEYS_CHANGED, TRACK_MSG_KEYS_CHANGED}));
    root()->getAutomation()->answerCancel();
    dclick(xOf(0.5f), 4 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(mesh->getKey(0))->getValue(), "meshes/new.mesh");
    EXPECT_EQ(messages().size(), 3u);
}

TEST_F(UITrackLineTest, DoubleClickOnAColourKeyTakesTheChosenColour)
{
    loadPulse();
    auto* glow = static_cast<FParameterColor*>(single(1));
    const vec4 chosen(0.25f, 0.5f, 0.75f, 1.0f);
    root()->getAutomation()->answerColor(chosen);
    dclick(xOf(1.0f), ROW + 15);
    EXPECT_TRUE(near(static_cast<FKeyColor*>(glow->getKey(1))->getValue(), chosen, 1e-6f));
    EXPECT_TRUE(near(glow->engine_parameter()->getKey(1).value, chosen, 1e-6f));
    EXPECT_TRUE(glow->getLine()->isDirty());
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_KEYS_CHANGED});
    EXPECT_TRUE(near(pixel(xOf(1.0f), ROW + 17), chosen));

    root()->getAutomation()->answerCancel();
    dclick(xOf(1.0f), ROW + 15);
    EXPECT_TRUE(near(static_cast<FKeyColor*>(glow->getKey(1))->getValue(), chosen, 1e-6f));
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_KEYS_CHANGED});
}

TEST_F(UITrackLineTest, LineLabelNamesTheBindingAndRefusesComponents)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    EXPECT_EQ(single(3)->getLine()->getText(), "Crate");  // a switch bound to a node
    EXPECT_EQ(single(13)->getLine()->getText(), "Crate"); // a material name on a node
    EXPECT_EQ(single(17)->getLine()->getText(), "brick"); // a colour bound to a material
    EXPECT_EQ(single(12)->getLine()->getText(), "");      // float lines carry no label
    EXPECT_EQ(single(21)->getLine()->getText(), "");      // the file of a nested track
    expectLogged("UITrackLineString::getText:parent not support");
}
