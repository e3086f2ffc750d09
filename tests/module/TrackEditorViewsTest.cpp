// The Track Editor window with its views: the row tree, the key lines and the two time bars show
// the document and stay in step through the host messages.
#include "ui/TrackEditor.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKeyFloat.h"
#include "data/FParameterFloat.h"
#include "data/FTrack.h"
#include "msg/MsgMngr.h"
#include "msg/UiMsg.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

class TrackEditorViewsTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_editor = make<TrackEditor>(root());
        m_editor->setWorld(demoWorld());
        m_editor->show();
    }
    void TearDown() override
    {
        destroy(m_editor);
        ModuleFixture::TearDown();
    }

    void loadDemo()
    {
        ASSERT_TRUE(AppData::get()->loadTrack(jString(samplePath("demo.anim").c_str()), demoWorld()));
        MsgMngr::get()->notifyHelper(210);
        frame();
        clearMessages();
    }
    void frame()
    {
        m_editor->update(1.0f / 60.0f);
        settle();
        m_editor->update(1.0f / 60.0f);
    }
    UITimeBar* bar() const { return static_cast<UITimeBar*>(m_editor->findView("timebar")->getParent()); }
    UITrackRowPanel* rows() const { return UITrackRowPanel::get(); }
    UITrackLinePanel* lines() const { return UITrackLinePanel::get(); }
    FTrack* document() const { return AppData::get()->getTrack(); }

    TrackEditor* m_editor = nullptr;
};

TEST_F(TrackEditorViewsTest, EveryKeyOwningParameterHasARowAndALineSideBySide)
{
    loadDemo();
    const jVector<FParameterSingle*>& singles = document()->getSingleParameters();
    ASSERT_EQ(rows()->getRows().size(), singles.size());
    ASSERT_EQ(lines()->getLines().size(), singles.size());
    for (int i = 0; i < singles.size(); ++i) {
        EXPECT_EQ(rows()->getRows()[i]->getData(), singles[i]) << i;
        EXPECT_EQ(lines()->getLines()[i]->getData(), singles[i]) << i;
        EXPECT_EQ(lines()->getLines()[i]->getKeys().size(), singles[i]->getNumKeys()) << i;
    }
}

TEST_F(TrackEditorViewsTest, ADocumentLoadedBeforeTheWindowIsShownInIt)
{
    destroy(m_editor);
    ASSERT_TRUE(AppData::get()->loadTrack(jString(samplePath("pulse.anim").c_str()), demoWorld()));
    m_editor = make<TrackEditor>(root());
    EXPECT_EQ(rows()->getRows().size(), document()->getNumSingleParameters());
    EXPECT_EQ(lines()->getLines().size(), document()->getNumSingleParameters());
}

TEST_F(TrackEditorViewsTest, LoadingSetsTheTimeBarsToTheTracksLimits)
{
    loadDemo();
    const Track* track = document()->getEngineTrack();
    EXPECT_FLOAT_EQ(bar()->getMin(), track->getBeginTime());
    EXPECT_FLOAT_EQ(bar()->getMax(), track->getEndTime());
    EXPECT_FLOAT_EQ(bar()->getBegin(), track->getBeginTime());
    EXPECT_FLOAT_EQ(bar()->getEnd(), track->getEndTime());
}

TEST_F(TrackEditorViewsTest, TheRangeAndTimeMessagesMoveTheBarsWithinTheirOwnLimits)
{
    loadDemo();
    AppData::get()->setBeginTime(1.0f);
    AppData::get()->setEndTime(4.0f);
    MsgMngr::get()->notifyHelper(199);
    EXPECT_FLOAT_EQ(bar()->getBegin(), 1.0f);
    EXPECT_FLOAT_EQ(bar()->getEnd(), 4.0f);

    // A bar whose own range is narrower than the play range shows the time at its nearer end, while
    // the track is played at the time itself.
    bar()->setEnd(2.0f);
    AppData::get()->setTime(3.0f);
    MsgMngr::get()->notifyHelper(201);
    EXPECT_FLOAT_EQ(bar()->getTime(), 2.0f);
    EXPECT_FLOAT_EQ(document()->getEngineTrack()->getTime(), 3.0f);
}

TEST_F(TrackEditorViewsTest, DraggingThePlayHeadMovesTheDocumentsTime)
{
    loadDemo();
    UICanvas* canvas = bar()->getCanvas();
    const int w = canvas->getWidth();
    int x = 0, y = 0;
    root()->getAutomation()->elementPoint(canvas, (w - 12) / 2 + 6, canvas->getHeight() / 2, x, y);
    UIEventMouse press;
    press.x = x;
    press.y = y;
    press.button = UI_MOUSE_LEFT;
    press.buttons = 1 << UI_MOUSE_LEFT;
    EXPECT_TRUE(bar()->onMouseDown(&press));
    EXPECT_NEAR(AppData::get()->getTime(), 3.0f, 6.0f / float(w - 12));
    EXPECT_EQ(messages(), std::vector<int>({201}));
    EXPECT_NEAR(document()->getEngineTrack()->getTime(), AppData::get()->getTime(), 1e-6f);
}

TEST_F(TrackEditorViewsTest, ARowSelectionSelectsTheParametersAndTheirLines)
{
    loadDemo();
    UITrackRow* second = rows()->getRows()[1];
    rows()->select(second);
    MsgMngr::get()->notifyHelper(207);
    auto* parameter = static_cast<FParameterSingle*>(second->getData());
    EXPECT_EQ(document()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(document()->getSelectedParameters().contains(parameter));
    EXPECT_EQ(lines()->getSelectedLines().size(), 1);
    EXPECT_TRUE(lines()->getSelectedLines().contains(parameter->getLine()));
    EXPECT_EQ(lines()->getCurrentLine(), parameter->getLine());
    EXPECT_EQ(rows()->getCurrent(), second);
}

TEST_F(TrackEditorViewsTest, MarkedKeysBecomeEveryViewsSelection)
{
    loadDemo();
    FParameterSingle* x = document()->getSingleParameters()[0];
    FParameterSingle* y = document()->getSingleParameters()[1];
    x->getKeySet().insert(x->getKey(0));
    x->getKeySet().insert(x->getKey(1));
    y->getKeySet().insert(y->getKey(2));
    MsgMngr::get()->notifyHelper(205);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 3);
    EXPECT_TRUE(lines()->getSelectedKeys().contains(y->getKey(2)->getLineKey()));
    EXPECT_EQ(lines()->getSelectedLines().size(), 2);
    EXPECT_EQ(rows()->getSelected().size(), 2);
    EXPECT_EQ(document()->getSelectedParameters().size(), 2);
    EXPECT_EQ(m_editor->getTitle().find("*"), -1); // selecting changes nothing to save
}

TEST_F(TrackEditorViewsTest, ANewKeyBecomesTheOnlySelectedKey)
{
    loadDemo();
    auto* x = static_cast<FParameterFloat*>(document()->getSingleParameters()[0]);
    jVector<UITrackLineKey*> before;
    before.append(x->getKey(0)->getLineKey());
    before.append(x->getKey(1)->getLineKey());
    lines()->setSelectedKeys(before);
    FKeyFloat* key = x->createKey(0.25f, vec4());
    ASSERT_NE(key, nullptr);
    x->sortKeys();
    x->applyKeys();
    MsgMngr::get()->notifyHelperPtr(203, key);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(lines()->getSelectedKeys().contains(key->getLineKey()));
    EXPECT_EQ(lines()->getCurrentKey(), key->getLineKey());
    EXPECT_TRUE(rows()->getSelected().contains(x->getRow()));
    EXPECT_TRUE(document()->getSelectedParameters().contains(x));
    EXPECT_EQ(x->getKey(1), key); // sorted in after the key at 0
    EXPECT_NE(m_editor->getTitle().find("*"), -1);
}

TEST_F(TrackEditorViewsTest, RowsAndKeyLinesScrollTogether)
{
    loadDemo();
    UIScrollBox* rowScroll = rows()->getScroll();
    ASSERT_GT(rowScroll->getVScrollMax(), 0) << "the demo has more rows than the window shows";
    rowScroll->setVScrollValue(44);
    frame();
    EXPECT_EQ(lines()->getScroll()->getVScrollValue(), rowScroll->getVScrollValue());
}

TEST_F(TrackEditorViewsTest, ClearingTheDocumentEmptiesTheViewsAndTheirSelections)
{
    loadDemo();
    FParameterSingle* x = document()->getSingleParameters()[0];
    jVector<UITrackLineKey*> marks;
    marks.append(x->getKey(0)->getLineKey());
    lines()->setSelectedKeys(marks);
    lines()->setCurrentKey(marks[0]);
    rows()->select(x->getRow());
    m_editor->clear();
    EXPECT_EQ(lines()->getLines().size(), 0);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 0);
    EXPECT_EQ(lines()->getCurrentKey(), nullptr);
    EXPECT_EQ(rows()->getRows().size(), 0);
    EXPECT_EQ(rows()->getSelected().size(), 0);
    frame(); // nothing left to draw, and nothing freed is touched
}
