// The Track Editor window: its title, commands, playback, and views kept in step by host messages.
#include "ui/TrackEditor.h"

#include "ModuleFixture.h"
#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/FKeyFloat.h"
#include "data/FParameterFloat.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {

constexpr float FRAME = 1.0f / 60.0f;

} // namespace

class TrackEditorTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_editor = make<TrackEditor>(root());
        m_editor->show();
        clearMessages();
    }
    void TearDown() override
    {
        destroy(m_editor);
        ModuleFixture::TearDown();
    }

    jString title() const { return m_editor->getTitle(); }
    ToolButton* button(const char* name) const
    {
        ToolButton* found = m_editor->findButton(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    // Loads the looping demo track into the editor as the load command does.
    void loadDemo()
    {
        m_editor->setWorld(demoWorld());
        root()->getAutomation()->answerFile(samplePath("demo.anim").c_str());
        button("load")->click();
        ASSERT_FALSE(AppData::get()->isEmpty());
    }
    void frame()
    {
        m_editor->update(FRAME);
        settle();
        m_editor->update(FRAME);
    }
    UITimeBar* bar() const { return static_cast<UITimeBar*>(m_editor->findView("timebar")->getParent()); }
    UITrackRowPanel* rows() const { return UITrackRowPanel::get(); }
    UITrackLinePanel* lines() const { return UITrackLinePanel::get(); }

    TrackEditor* m_editor = nullptr;
};

// The title names the file (or a new track) and marks unsaved changes; a cancelled load keeps both,
// an unreadable file leaves the editor cleared.
TEST_F(TrackEditorTest, TitleShowsTheDocumentAndItsModifiedMark)
{
    EXPECT_EQ(title(), "Anim - New Track");
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_NEW);
    EXPECT_EQ(title(), "Anim - New Track*");
    MsgMngr::get()->notifyHelper(TRACK_MSG_SAVED);
    EXPECT_EQ(title(), "Anim - New Track");
    const int unchanging[] = {TRACK_MSG_RANGE_CHANGED,  TRACK_MSG_SELECTION_LISTS, TRACK_MSG_LINE_SELECTION,
                              TRACK_MSG_ROW_SELECTION, TRACK_MSG_CURVE_SELECTION, TRACK_MSG_CLEARED, 212, 192};
    for (int id : unchanging)
        MsgMngr::get()->notifyHelper(id);
    EXPECT_EQ(title(), "Anim - New Track");
    loadDemo();
    EXPECT_EQ(messages().back(), TRACK_MSG_LOADED);
    EXPECT_TRUE(button("time_loop")->isChecked()); // the demo loops
    std::string path = samplePath("demo.anim");
    EXPECT_EQ(title(), (path + " - Anim").c_str());
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
    root()->getAutomation()->answerCancel();
    button("load")->click();
    EXPECT_FALSE(AppData::get()->isEmpty());
    EXPECT_EQ(title(), (path + " - Anim*").c_str());
    MsgMngr::get()->notifyHelper(TRACK_MSG_LOADED);
    EXPECT_EQ(title(), (path + " - Anim").c_str());
    // The host owns the window: forgetting the instance leaves it as it is.
    TrackEditor::del();
    EXPECT_EQ(TrackEditor::get(), nullptr);
    EXPECT_EQ(title(), (path + " - Anim").c_str());

    clearMessages();
    root()->getAutomation()->answerFile("/nonexistent/walk.anim");
    button("load")->click();
    expectLogged("Open world error:/nonexistent/walk.anim");
    EXPECT_TRUE(AppData::get()->isEmpty());
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_CLEARED});
}

// Past the end a looping track starts over at the range begin, moving the nodes as it plays; without
// the loop, playback stops exactly at the end and the play button comes up.
TEST_F(TrackEditorTest, PlaybackLoopsOrStopsAtTheEndAndMovesTheNodes)
{
    loadDemo();
    Node* crate = demoWorld()->getNodeByName("Crate");
    ASSERT_NE(crate, nullptr);
    AppData::get()->setBeginTime(1.0f);
    button("time_play")->click();
    ASSERT_TRUE(m_editor->isPlay());
    AppData::get()->setTime(AppData::get()->getEndTime() - 0.25f * FRAME);
    m_editor->update(FRAME);
    EXPECT_EQ(AppData::get()->getTime(), 1.0f);
    EXPECT_TRUE(m_editor->isPlay());
    const float before = crate->getPosition().y;
    for (int i = 0; i < 45; ++i)
        m_editor->update(FRAME);
    EXPECT_NE(crate->getPosition().y, before);
    EXPECT_NEAR(AppData::get()->getTime(), 1.0f + 45 * FRAME, 1e-4);

    button("time_loop")->click();
    ASSERT_FALSE(engine()->isLoop());
    AppData::get()->setTime(AppData::get()->getEndTime() - 0.5f * FRAME);
    m_editor->update(FRAME);
    EXPECT_EQ(AppData::get()->getTime(), AppData::get()->getEndTime());
    EXPECT_FALSE(m_editor->isPlay());
    EXPECT_FALSE(button("time_play")->isChecked());
}

// Clearing stops playback, empties the document and every view with its selection, and tells the
// host (TRACK_MSG_CLEARED).
// An empty track cannot play or loop; "previous" and the delete key still post, delete as a change.
TEST_F(TrackEditorTest, ClearEmptiesTheDocumentAndTheViewsAndAnEmptyTrackCannotPlay)
{
    loadDemo();
    FParameterSingle* x = single(0);
    jVector<UITrackLineKey*> marks;
    marks.append(x->getKey(0)->getLineKey());
    lines()->setSelectedKeys(marks);
    lines()->setCurrentKey(marks[0]);
    rows()->select(x->getRow());
    doc()->getSelectedParameters().insert(x);
    button("time_play")->click();
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
    clearMessages();
    button("clear")->click();
    EXPECT_FALSE(m_editor->isPlay());
    EXPECT_FALSE(button("time_play")->isChecked());
    EXPECT_FALSE(button("time_loop")->isChecked());
    EXPECT_TRUE(AppData::get()->isEmpty());
    EXPECT_EQ(title(), "Anim - New Track");
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_CLEARED});
    EXPECT_EQ(lines()->getLines().size(), 0);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 0);
    EXPECT_EQ(lines()->getCurrentKey(), nullptr);
    EXPECT_EQ(rows()->getRows().size(), 0);
    EXPECT_EQ(rows()->getSelected().size(), 0);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 0);
    frame(); // nothing left to draw, and nothing freed is touched

    clearMessages();
    button("time_play")->click();
    EXPECT_FALSE(button("time_play")->isChecked());
    button("time_loop")->click();
    EXPECT_FALSE(button("time_loop")->isChecked());
    button("time_next")->click();
    EXPECT_TRUE(messages().empty());
    button("time_prev")->click();
    UIEventKey key;
    key.key = UI_KEY_DELETE;
    m_editor->onKeyPress(&key);
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_TIME_CHANGED, TRACK_MSG_KEYS_DELETED}));
    EXPECT_EQ(title(), "Anim - New Track*");
}

// An unchanged file is not saved; a new track takes the chosen name with the track extension added,
// unless the name holds it anywhere (a backup such as walk.anim.bak is kept as it is).
TEST_F(TrackEditorTest, SavingWritesChangesUnderTheFilesPathOrAChosenName)
{
    TempDir dir;
    std::string path = dir.file("copy.anim");
    ASSERT_TRUE(writeFileText(path, readFileText(samplePath("demo.anim"))));
    root()->getAutomation()->answerFile(path.c_str());
    m_editor->setWorld(demoWorld());
    button("load")->click();
    ASSERT_TRUE(writeFileText(path, "sentinel"));
    clearMessages();
    button("save")->click();
    EXPECT_EQ(readFileText(path), "sentinel");
    EXPECT_TRUE(messages().empty());
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
    button("save")->click();
    EXPECT_EQ(readFileText(path), readFileText(samplePath("demo.anim")));
    EXPECT_EQ(title(), (path + " - Anim").c_str());

    AppData::get()->reset(); // a new document: no path
    engine()->setEndTime(4.0f);
    root()->getAutomation()->answerFile(dir.file("fresh").c_str());
    button("save")->click();
    EXPECT_NE(readFileText(dir.file("fresh.anim")), "<missing>");
    EXPECT_EQ(AppData::get()->getPath(), dir.file("fresh.anim").c_str());
    EXPECT_EQ(messages().back(), TRACK_MSG_SAVED);
    AppData::get()->reset();
    root()->getAutomation()->answerFile(dir.file("walk.anim.bak").c_str());
    button("save")->click();
    EXPECT_NE(readFileText(dir.file("walk.anim.bak")), "<missing>");
    EXPECT_EQ(readFileText(dir.file("walk.anim.bak.anim")), "<missing>");
}

// Each parameter has a row and a key line side by side, even when loaded before the window was made.
TEST_F(TrackEditorTest, EveryKeyOwningParameterHasARowAndALineSideBySide)
{
    loadDemo();
    const jVector<FParameterSingle*>& singles = doc()->getSingleParameters();
    ASSERT_EQ(rows()->getRows().size(), singles.size());
    ASSERT_EQ(lines()->getLines().size(), singles.size());
    for (int i = 0; i < singles.size(); ++i) {
        EXPECT_EQ(rows()->getRows()[i]->getData(), singles[i]) << i;
        EXPECT_EQ(lines()->getLines()[i]->getData(), singles[i]) << i;
        EXPECT_EQ(lines()->getLines()[i]->getKeys().size(), singles[i]->getNumKeys()) << i;
    }
    frame();
    UIScrollBox* rowScroll = rows()->getScroll();
    ASSERT_GT(rowScroll->getVScrollMax(), 0) << "the demo has more rows than the window shows";
    rowScroll->setVScrollValue(44);
    frame();
    EXPECT_EQ(lines()->getScroll()->getVScrollValue(), rowScroll->getVScrollValue());

    destroy(m_editor);
    ASSERT_TRUE(loadSample("pulse.anim"));
    m_editor = make<TrackEditor>(root());
    EXPECT_EQ(rows()->getRows().size(), 2);
    EXPECT_EQ(lines()->getLines().size(), 2);
}

// The time bars take the track's limits and follow the range and time; a bar narrower than the play
// range shows the time at its nearer end, while the track plays the time itself.
TEST_F(TrackEditorTest, TimeBarsFollowTheDocumentAndMoveItsTime)
{
    loadDemo();
    frame();
    EXPECT_FLOAT_EQ(bar()->getMax(), engine()->getEndTime());
    EXPECT_FLOAT_EQ(bar()->getBegin(), engine()->getBeginTime());
    EXPECT_FLOAT_EQ(bar()->getEnd(), engine()->getEndTime());
    clearMessages();
    UICanvas* canvas = bar()->getCanvas();
    const int w = canvas->getWidth();
    const UIEventMouse press = mouseAt(canvas, (w - 12) / 2 + 6, canvas->getHeight() / 2);
    EXPECT_TRUE(bar()->onMouseDown(&press));
    EXPECT_NEAR(AppData::get()->getTime(), 3.0f, 6.0f / float(w - 12));
    EXPECT_EQ(messages(), std::vector<int>({TRACK_MSG_TIME_CHANGED}));
    EXPECT_NEAR(engine()->getTime(), AppData::get()->getTime(), 1e-6f);

    AppData::get()->setBeginTime(1.0f);
    AppData::get()->setEndTime(4.0f);
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    EXPECT_FLOAT_EQ(bar()->getBegin(), 1.0f);
    EXPECT_FLOAT_EQ(bar()->getEnd(), 4.0f);
    bar()->setEnd(2.0f);
    AppData::get()->setTime(3.0f);
    MsgMngr::get()->notifyHelper(TRACK_MSG_TIME_CHANGED);
    EXPECT_FLOAT_EQ(bar()->getTime(), 2.0f);
    EXPECT_FLOAT_EQ(engine()->getTime(), 3.0f);
}

// A selection made in one view becomes the document's and every other view's, and a new key becomes
// the only selected key. Selecting is not a change; a new key is.
TEST_F(TrackEditorTest, ASelectionInOneViewIsEveryViews)
{
    loadDemo();
    UITrackRow* second = rows()->getRows()[1];
    rows()->select(second);
    MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
    FParameterSingle* y = single(1);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(doc()->getSelectedParameters().contains(y));
    EXPECT_EQ(lines()->getSelectedLines().size(), 1);
    EXPECT_TRUE(lines()->getSelectedLines().contains(y->getLine()));
    EXPECT_EQ(lines()->getCurrentLine(), y->getLine());
    EXPECT_EQ(rows()->getCurrent(), second);

    auto* x = static_cast<FParameterFloat*>(single(0));
    x->getKeySet().insert(x->getKey(0));
    x->getKeySet().insert(x->getKey(1));
    y->getKeySet().insert(y->getKey(2));
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 3);
    EXPECT_TRUE(lines()->getSelectedKeys().contains(y->getKey(2)->getLineKey()));
    EXPECT_EQ(lines()->getSelectedLines().size(), 2);
    EXPECT_EQ(rows()->getSelected().size(), 2);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 2);
    EXPECT_EQ(title().find("*"), -1);

    FKeyFloat* key = x->createKey(0.25f, vec4());
    ASSERT_NE(key, nullptr);
    x->sortKeys();
    x->applyKeys();
    MsgMngr::get()->notifyHelperPtr(TRACK_MSG_KEY_MADE, key);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(lines()->getSelectedKeys().contains(key->getLineKey()));
    EXPECT_EQ(lines()->getCurrentKey(), key->getLineKey());
    EXPECT_EQ(rows()->getSelected().size(), 1);
    EXPECT_TRUE(rows()->getSelected().contains(x->getRow()));
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(doc()->getSelectedParameters().contains(x));
    EXPECT_NE(title().find("*"), -1);
}
