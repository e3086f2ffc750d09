#include "ui/UITrackLine.h"

#include "LinePanelFixture.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "data/FKeyColor.h"
#include "data/FKeyString.h"
#include "data/FParameterColor.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterStringMaterial.h"
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
    EXPECT_TRUE(dclick(xOf(0.5f), 2 * ROW + 15));
    EXPECT_TRUE(static_cast<FKeyToggle*>(lamp->getKey(0))->getValue());
    bool found = false;
    EXPECT_EQ(lamp->engine_parameter()->getTrackValue(0.5f, found), 1);
    EXPECT_EQ(messages(), std::vector<int>{197});
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
    EXPECT_EQ(messages(), std::vector<int>{197});
    EXPECT_TRUE(near(pixel(xOf(1.0f), ROW + 17), chosen));

    root()->getAutomation()->answerCancel();
    dclick(xOf(1.0f), ROW + 15);
    EXPECT_TRUE(near(static_cast<FKeyColor*>(glow->getKey(1))->getValue(), chosen, 1e-6f));
    EXPECT_EQ(messages(), std::vector<int>{197});
}

TEST_F(UITrackLineTest, DoubleClickOnAFileKeyStoresTheChosenFileInTheDataFolder)
{
    loadPulse();
    FParameterStringFile* mesh = AppData::get()->getTrack()->createParameterStringFile("Mesh");
    mesh->createKey(0.5f, jString("meshes/old.mesh"));
    mesh->applyKeys();
    redraw();
    clearMessages();
    root()->getAutomation()->answerFile((std::string(KUVO_DATA_DIR) + "/meshes/new.mesh").c_str());
    dclick(xOf(0.5f), 2 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(mesh->getKey(0))->getValue(), "meshes/new.mesh");
    EXPECT_EQ(mesh->engine_parameter()->getKey(0).value, "meshes/new.mesh");
    EXPECT_EQ(mesh->getKey(0)->getLineKey()->getText(), "new.mesh");
    EXPECT_EQ(messages(), std::vector<int>{197});

    root()->getAutomation()->answerCancel();
    dclick(xOf(0.5f), 2 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(mesh->getKey(0))->getValue(), "meshes/new.mesh");
    EXPECT_EQ(messages(), std::vector<int>{197});
}

TEST_F(UITrackLineTest, DoubleClickOnANamedMaterialKeyClearsIt)
{
    loadPulse();
    FParameterStringMaterial* look = AppData::get()->getTrack()->createParameterStringMaterial("Look");
    look->createKey(0.5f, jString("metal"));
    look->applyKeys();
    redraw();
    clearMessages();
    dclick(xOf(0.5f), 2 * ROW + 15);
    EXPECT_EQ(static_cast<FKeyString*>(look->getKey(0))->getValue(), "");
    EXPECT_EQ(look->engine_parameter()->getKey(0).value, "");
    EXPECT_TRUE(look->getKey(0)->getLineKey()->isEmptyMark());
    EXPECT_EQ(messages(), std::vector<int>{197});
}

TEST_F(UITrackLineTest, LineLabelNamesTheBindingAndRefusesComponents)
{
    ASSERT_TRUE(AppData::get()->loadTrack(jString(samplePath("demo.anim").c_str()), demoWorld()));
    EXPECT_EQ(single(3)->getLine()->getText(), "Crate");  // a switch bound to a node
    EXPECT_EQ(single(13)->getLine()->getText(), "Crate"); // a material name on a node
    EXPECT_EQ(single(17)->getLine()->getText(), "brick"); // a colour bound to a material
    EXPECT_EQ(single(12)->getLine()->getText(), "");      // float lines carry no label
    EXPECT_EQ(single(21)->getLine()->getText(), "");      // the file of a nested track
    expectLogged("UITrackLineString::getText:parent not support");
}
