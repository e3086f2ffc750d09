#include "ui/UITrackLinePanel.h"

#include "LinePanelFixture.h"
#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterFloat.h"
#include "data/FKeyFloat.h"
#include "data/FParameterStringFile.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineColor.h"

using UITrackLinePanelTest = LinePanelFixture;

// A click selects its key alone; a modifier adds one, and pressing a selected key keeps the set.
TEST_F(UITrackLinePanelTest, ClickSelectsOneKeyAndAModifierAddsOne)
{
    loadPulse();
    EXPECT_TRUE(press(xOf(0.5f), 15));
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_SELECTION_LISTS, TRACK_MSG_LINE_SELECTION}));
    release(xOf(0.5f), 15);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(panel()->getCurrentKey(), mark(0, 1));
    EXPECT_EQ(panel()->getCurrentLine(), single(0)->getLine());
    EXPECT_EQ(messages().size(), 2u); // the release sends nothing
    click(1, 2);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(1, 2)));
    EXPECT_TRUE(panel()->getSelectedLines().contains(single(1)->getLine()));
    const int lists = TRACK_MSG_SELECTION_LISTS, lines = TRACK_MSG_LINE_SELECTION;
    EXPECT_EQ(messages(), (std::vector<int>{lists, lines, lists, lines}));

    click(1, 1, UI_MOD_CTRL);
    click(0, 3, UI_MOD_SHIFT);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 3);
    EXPECT_EQ(panel()->getSelectedLines().size(), 2);
    click(1, 1);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 3);
    EXPECT_EQ(panel()->getCurrentKey(), mark(1, 1));
    EXPECT_EQ(messages().size(), 10u);
}

// A press on empty space clears the selection; with a modifier its box adds to the selection.
TEST_F(UITrackLinePanelTest, PressOnEmptySpaceClearsOrExtendsWithABox)
{
    loadPulse();
    click(0, 1);
    click(1, 1, UI_MOD_CTRL);
    clearMessages();
    press(231, 15); // on the band between two keys
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_SELECTION_LISTS, TRACK_MSG_LINE_SELECTION}));
    EXPECT_EQ(panel()->getSelectedKeys().size(), 0);
    EXPECT_EQ(panel()->getSelectedLines().size(), 0);
    EXPECT_EQ(panel()->getCurrentKey(), nullptr);
    release(231, 15);

    click(0, 1);
    clearMessages();
    press(380, ROW + 18, UI_MOD_CTRL);
    EXPECT_TRUE(messages().empty());
    EXPECT_TRUE(selected(mark(0, 1)));
    move(300, ROW + 13); // the box reaches the glow key at 1 s
    EXPECT_EQ(panel()->getSelectedKeys().size(), 2);
    EXPECT_TRUE(selected(mark(1, 1)));
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_SELECTION_LISTS});
    move(379, ROW + 17);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(selected(mark(0, 1)));
    release(379, ROW + 17);
}

// A box takes the keys whose mark area it touches, to the pixel.
TEST_F(UITrackLinePanelTest, BoxTakesKeysWhoseMarkAreaItTouches)
{
    loadPulse();
    // The glow key at 1 s: mark area x 300 to 312, y 30 to 44.
    press(250, ROW + 3);
    move(300, ROW + 8);
    EXPECT_TRUE(selected(mark(1, 1)));
    move(299, ROW + 8);
    EXPECT_FALSE(selected(mark(1, 1)));
    move(300, ROW + 7);
    EXPECT_FALSE(selected(mark(1, 1)));
    release(300, ROW + 7);
    // The bulb key at 0.5 s from below: mark area x 150 to 162, y 8 to 22.
    press(200, ROW + 18);
    move(162, 22);
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    move(163, 22);
    EXPECT_FALSE(selected(mark(0, 1)));
    move(162, 23);
    EXPECT_FALSE(selected(mark(0, 1)));
    release(162, 23);
}

// A press that moves three pixels is still a click; dragged keys move together into the engine, the
// block as a whole staying inside the track's limits.
TEST_F(UITrackLinePanelTest, DragMovesSelectedKeysTogetherInsideTheTrackLimits)
{
    loadPulse();
    click(0, 1);              // bulb 0.5 s
    click(1, 1, UI_MOD_CTRL); // glow 1 s
    clearMessages();
    const auto* bulb = static_cast<const TrackParameterFloat*>(single(0)->getTrackParameter());
    press(xOf(0.5f), 15);
    move(xOf(0.5f) + 2, 16);
    move(xOf(0.5f) + 3, 15);
    EXPECT_EQ(bulb->getKey(1).time, 0.5f);
    move(xOf(0.5f) + 75, 15); // a quarter second later
    release(xOf(0.5f) + 75, 15);
    EXPECT_EQ(mark(0, 1)->getTime(), 0.75f);
    EXPECT_EQ(mark(1, 1)->getTime(), 1.25f);
    EXPECT_EQ(messages(),
              (std::vector<int>{TRACK_MSG_SELECTION_LISTS, TRACK_MSG_LINE_SELECTION, TRACK_MSG_KEYS_MOVED}));
    EXPECT_EQ(bulb->getKey(1).time, 0.75f);
    EXPECT_EQ(bulb->getKey(1).value, 4.0f);
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    EXPECT_EQ(glow->getKey(1).time, 1.25f);

    UITrackLineKey* bulbKey = mark(0, 3); // 1.5 s
    UITrackLineKey* glowKey = mark(1, 2); // 2 s
    click(0, 3);
    click(1, 2, UI_MOD_CTRL);
    press(xOf(1.5f), 15);
    move(xOf(2.0f), 15); // the glow key is at the end already: nothing can move right
    EXPECT_EQ(bulbKey->getTime(), 1.5f);
    EXPECT_EQ(glowKey->getTime(), 2.0f);
    move(xOf(0.0f), 15);
    EXPECT_EQ(bulbKey->getTime(), 0.0f);
    EXPECT_EQ(glowKey->getTime(), 0.5f); // half a second behind, as before
    EXPECT_EQ(single(1)->getKey(1)->getLineKey(), glowKey); // re-sorted
    release(xOf(0.0f), 15);
    EXPECT_EQ(bulb->getKey(0).time, 0.0f);
    EXPECT_EQ(bulb->getKey(1).time, 0.0f);
    EXPECT_EQ(bulb->getKey(4).time, 2.0f);
}

// Keys outside the view move with the block and keep their offsets: the track's limits hold the
// block, not the view, and a pointer that goes back brings it back. A block that already reaches past
// a limit goes no further out.
TEST_F(UITrackLinePanelTest, DragMovesKeysOutsideTheViewWithTheBlock)
{
    loadPulse();
    engine()->setEndTime(3.0f);
    UITrackLineKey* bulbKey = mark(0, 2); // 1 s
    UITrackLineKey* glowKey = mark(1, 2); // 2 s, then out of the view at 2.5 s
    click(0, 2);
    click(1, 2, UI_MOD_CTRL);
    glowKey->getKey()->setTime(2.5f);
    press(xOf(1.0f), 15);
    move(xOf(1.0f) + 4, 15);
    EXPECT_NEAR(glowKey->getTime(), 2.5f + 4.0f / 300.0f, 1e-5f);
    move(xOf(1.0f) + 300, 15); // a second later: the glow key stops the block at the track's end
    EXPECT_NEAR(glowKey->getTime(), 3.0f, 1e-5f);
    move(xOf(1.0f) - 120, 15);
    release(xOf(1.0f) - 120, 15);
    EXPECT_NEAR(bulbKey->getTime(), 0.6f, 1e-5f);
    EXPECT_NEAR(static_cast<const TrackParameterColor*>(single(1)->getTrackParameter())->getKey(2).time, 2.1f, 1e-5f);

    engine()->setEndTime(1.5f); // the glow key now lies past the end
    redraw();
    press(xOf(0.6f), 15);
    move(xOf(0.6f) + 30, 15);
    EXPECT_NEAR(bulbKey->getTime(), 0.6f, 1e-5f);
    move(xOf(0.6f) - 30, 15);
    EXPECT_NEAR(glowKey->getTime(), 2.0f, 1e-5f);
    release(xOf(0.6f) - 30, 15);
}

// A view with no width shows every key at the left edge and maps every pixel to its one time; an
// inverted view shows as its ordered form. Drawing and dragging stay on the canvas and on numbers.
TEST_F(UITrackLinePanelTest, EmptyAndInvertedViewsMapLikeTheirOrderedForm)
{
    loadPulse();
    AppData::get()->setBeginTime(1.0f);
    AppData::get()->setEndTime(1.0f);
    panel()->setDirty(); // as the window does when the range changes
    redraw();
    EXPECT_EQ(canvas()->getPolygonIntersection(6, 15), mark(0, 0)->getHitPolygon());
    press(6, 15);
    move(200, 15);
    release(200, 15);
    EXPECT_EQ(mark(0, 0)->getTime(), 0.0f);

    AppData::get()->setBeginTime(1.25f);
    AppData::get()->setEndTime(0.5f);
    panel()->setDirty();
    redraw();
    EXPECT_EQ(canvas()->getPolygonIntersection(6, 15), mark(0, 1)->getHitPolygon());   // 0.5 s
    EXPECT_EQ(canvas()->getPolygonIntersection(406, 15), mark(0, 2)->getHitPolygon()); // 1 s
    bool found = false;
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    const auto* strip = static_cast<const UITrackLineColor*>(single(1)->getLine());
    EXPECT_TRUE(near(strip->getStripPixel(0), glow->getTrackValue(0.5f, found), 1e-6f));
    press(6, 15);
    move(206, 15); // a third of the view later
    release(206, 15);
    EXPECT_EQ(mark(0, 1)->getTime(), 0.75f);
}

// A double click on an empty spot of a line makes a key there in one edit, holding the value the
// parameter has at that time. On a mark it edits the mark; below the last line and on a file line it
// makes nothing.
TEST_F(UITrackLinePanelTest, DoubleClickOnAnEmptySpotMakesAKeyThere)
{
    loadPulse();
    bool found = false;
    const auto* bulb = static_cast<const TrackParameterFloat*>(single(0)->getTrackParameter());
    const auto* glow = static_cast<const TrackParameterColor*>(single(1)->getTrackParameter());
    const float value = bulb->getTrackValue(0.25f, found);
    const vec4 colour = glow->getTrackValue(0.5f, found);
    EXPECT_TRUE(dclick(xOf(0.25f), 15));
    EXPECT_EQ(static_cast<const FKeyFloat*>(single(0)->getKey(1))->getTangents(), vec4());
    EXPECT_EQ(bulb->getKey(1).time, 0.25f);
    EXPECT_EQ(bulb->getKey(1).value, value);
    dclick(xOf(0.5f), ROW + 15);
    EXPECT_TRUE(near(glow->getKey(1).value, colour, 1e-6f));
    dclick(xOf(1.0f), 15);           // on a float key's mark: nothing to edit
    dclick(xOf(1.25f), 2 * ROW + 15); // below the last line
    EXPECT_EQ(single(0)->getNumKeys(), 6);
    FParameterStringFile* mesh = doc()->createParameterStringFile("Mesh");
    redraw();
    dclick(xOf(1.0f), 2 * ROW + 15);
    EXPECT_EQ(mesh->getNumKeys(), 0);
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_KEY_MADE, TRACK_MSG_KEY_MADE}));
}

// With snapping on, a dragged key lands on whole frames (at 24 fps, 12.5 pixels apart here) and a
// double click makes its key on one; holding Ctrl drags freely for that gesture.
TEST_F(UITrackLinePanelTest, SnappingLandsDraggedAndMadeKeysOnWholeFrames)
{
    loadPulse();
    AppData::get()->setFrameRate(24.0f);
    AppData::get()->setSnapping(true);
    click(0, 1); // 0.5 s
    press(xOf(0.5f), 15);
    move(xOf(0.5f) + 20, 15); // 0.567 s, frame 13.6
    EXPECT_FLOAT_EQ(mark(0, 1)->getTime(), 14.0f / 24.0f);
    SetKeyState(VK_CONTROL, true);
    move(xOf(0.5f) + 21, 15);
    SetKeyState(VK_CONTROL, false);
    EXPECT_NEAR(mark(0, 1)->getTime(), 0.57f, 1e-5f);
    release(xOf(0.5f) + 21, 15);
    EXPECT_TRUE(dclick(xOf(0.26f), 15));
    EXPECT_EQ(single(0)->getKey(1)->getTime(), 0.25f);
}

// A press during a gesture is swallowed; a move after a release outside the panel ends it.
TEST_F(UITrackLinePanelTest, PressDuringAGestureIsSwallowedAndALostReleaseEndsIt)
{
    loadPulse();
    press(xOf(0.5f), 15);
    EXPECT_TRUE(press(xOf(1.0f), ROW + 15)); // no release came in between
    EXPECT_TRUE(selected(mark(0, 1)));
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_SELECTION_LISTS, TRACK_MSG_LINE_SELECTION}));
    SetKeyState(VK_LBUTTON, false); // released outside the panel
    EXPECT_FALSE(move(xOf(0.5f) + 90, 15));
    EXPECT_EQ(mark(0, 1)->getTime(), 0.5f);
    EXPECT_FALSE(canvas()->hasFocus());
    release(xOf(0.5f) + 90, 15);
    click(1, 1);
    EXPECT_TRUE(selected(mark(1, 1)));
}

// Clearing the document empties the selection: a modifier click on the reloaded track selects only
// what is there, and drags it alone.
TEST_F(UITrackLinePanelTest, ClearingTheDocumentEmptiesTheSelection)
{
    loadPulse();
    click(0, 1);
    click(1, 1, UI_MOD_CTRL);
    ASSERT_EQ(panel()->getSelectedKeys().size(), 2);
    AppData::get()->reset();
    EXPECT_EQ(panel()->getSelectedLines().size(), 0);
    EXPECT_EQ(panel()->getCurrentLine(), nullptr);
    loadPulse();
    click(0, 1, UI_MOD_CTRL);
    EXPECT_EQ(panel()->getSelectedKeys().size(), 1);
    press(xOf(0.5f), 15);
    move(xOf(0.5f) + 30, 15);
    release(xOf(0.5f) + 30, 15);
    EXPECT_EQ(mark(0, 1)->getTime(), 0.6f);
}

// A line is held once, and one that lost its shapes is reported and skipped while the others draw.
TEST_F(UITrackLinePanelTest, LinesAreHeldOnceAndALineWithoutShapesIsSkipped)
{
    loadPulse();
    panel()->addLine(single(0)->getLine());
    expectLogged("UITrackLinePanel::addLine: curve is already defined");
    UITrackLine stranger;
    panel()->removeLine(&stranger);
    expectLogged("UITrackLinePanel::removeLine: can't find curve");
    EXPECT_EQ(panel()->getLines().size(), 2);
    single(0)->getLine()->forgetRender();
    panel()->setDirty();
    panel()->update(0.0f);
    expectLogged("UITrackLinePanel::update:id != INVALID_INDEX");
    EXPECT_EQ(canvas()->getPolygonIntersection(xOf(1.0f), ROW + 15), mark(1, 1)->getHitPolygon());
}
