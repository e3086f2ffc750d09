#include "ui/TrackEditor.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ToolButton.h"
#include "msg/MsgMngr.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "ui/UIAutomation.h"
#include "ui/UIRoot.h"

namespace {

constexpr float FRAME = 1.0f / 60.0f;

} // namespace

class TrackEditorTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        m_editor = make<TrackEditor>(root());
        clearMessages();
    }
    void TearDown() override
    {
        destroy(m_editor);
        ModuleFixture::TearDown();
    }

    TrackEditor* editor() const { return m_editor; }
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

private:
    TrackEditor* m_editor = nullptr;
};

TEST_F(TrackEditorTest, TitleShowsTheDocumentAndItsModifiedMark)
{
    EXPECT_EQ(title(), "Anim - New Track");
    MsgMngr::get()->notifyHelper(193);
    EXPECT_EQ(title(), "Anim - New Track*");
    MsgMngr::get()->notifyHelper(209);
    EXPECT_EQ(title(), "Anim - New Track");
    loadDemo();
    std::string path = samplePath("demo.anim");
    EXPECT_EQ(title(), (path + " - Anim").c_str());
    MsgMngr::get()->notifyHelper(200);
    EXPECT_EQ(title(), (path + " - Anim*").c_str());
    MsgMngr::get()->notifyHelper(210);
    EXPECT_EQ(title(), (path + " - Anim").c_str());
}

TEST_F(TrackEditorTest, MessagesThatChangeNothingLeaveTheTitle)
{
    for (int id : {199, 205, 206, 207, 208, 211, 212, 192})
        MsgMngr::get()->notifyHelper(id);
    EXPECT_EQ(title(), "Anim - New Track");
}

TEST_F(TrackEditorTest, DelForgetsTheInstanceOnly)
{
    EXPECT_EQ(TrackEditor::get(), editor());
    TrackEditor::del();
    EXPECT_EQ(TrackEditor::get(), nullptr);
    EXPECT_EQ(title(), "Anim - New Track"); // the window is still there
}

TEST_F(TrackEditorTest, DeleteKeyPostsItsMessageEvenWithoutSelection)
{
    UIEventKey key;
    key.key = UI_KEY_DELETE;
    editor()->onKeyPress(&key);
    EXPECT_EQ(messages(), std::vector<int>{204});
    EXPECT_EQ(title(), "Anim - New Track*");
}

TEST_F(TrackEditorTest, EmptyTrackCannotPlayOrLoop)
{
    button("time_play")->click();
    EXPECT_FALSE(button("time_play")->isChecked());
    EXPECT_FALSE(editor()->isPlay());
    button("time_loop")->click();
    EXPECT_FALSE(button("time_loop")->isChecked());
    button("time_next")->click();
    EXPECT_TRUE(messages().empty());
    button("time_prev")->click(); // posts even without parameters
    EXPECT_EQ(messages(), std::vector<int>{201});
}

TEST_F(TrackEditorTest, LoadingShowsTheTracksLoopSwitch)
{
    loadDemo();
    EXPECT_TRUE(button("time_loop")->isChecked());
    EXPECT_EQ(messages().back(), 210);
}

TEST_F(TrackEditorTest, PlaybackWithoutLoopStopsExactlyAtTheEnd)
{
    loadDemo();
    button("time_loop")->click(); // the demo loops; switch that off
    ASSERT_FALSE(AppData::get()->getTrack()->getEngineTrack()->isLoop());
    button("time_play")->click();
    ASSERT_TRUE(editor()->isPlay());
    AppData::get()->setTime(AppData::get()->getEndTime() - 0.5f * FRAME);
    editor()->update(FRAME);
    EXPECT_EQ(AppData::get()->getTime(), AppData::get()->getEndTime());
    EXPECT_FALSE(editor()->isPlay());
    EXPECT_FALSE(button("time_play")->isChecked());
}

TEST_F(TrackEditorTest, LoopingPastTheEndLandsOnTheBegin)
{
    loadDemo();
    AppData::get()->setBeginTime(1.0f);
    button("time_play")->click();
    AppData::get()->setTime(AppData::get()->getEndTime() - 0.25f * FRAME);
    editor()->update(FRAME);
    EXPECT_EQ(AppData::get()->getTime(), 1.0f);
    EXPECT_TRUE(editor()->isPlay());
}

TEST_F(TrackEditorTest, PlayingMovesTheAnimatedNodes)
{
    loadDemo();
    Node* crate = demoWorld()->getNodeByName("Crate");
    ASSERT_NE(crate, nullptr);
    button("time_play")->click();
    editor()->update(FRAME);
    float before = crate->getPosition().y;
    for (int i = 0; i < 45; ++i)
        editor()->update(FRAME);
    EXPECT_NE(crate->getPosition().y, before);
    EXPECT_NEAR(AppData::get()->getTime(), 46 * FRAME, 1e-4);
    button("time_play")->click();
    EXPECT_FALSE(editor()->isPlay());
}

TEST_F(TrackEditorTest, ClearStopsAndEmptiesTheDocument)
{
    loadDemo();
    button("time_play")->click();
    MsgMngr::get()->notifyHelper(200);
    clearMessages();
    button("clear")->click();
    EXPECT_FALSE(editor()->isPlay());
    EXPECT_FALSE(button("time_play")->isChecked());
    EXPECT_FALSE(button("time_loop")->isChecked());
    EXPECT_TRUE(AppData::get()->isEmpty());
    EXPECT_EQ(title(), "Anim - New Track");
    EXPECT_EQ(messages(), std::vector<int>{211});
}

TEST_F(TrackEditorTest, CancelledLoadChangesNothing)
{
    loadDemo();
    MsgMngr::get()->notifyHelper(200);
    root()->getAutomation()->answerCancel();
    button("load")->click();
    EXPECT_FALSE(AppData::get()->isEmpty());
    EXPECT_EQ(title(), (samplePath("demo.anim") + " - Anim*").c_str());
}

TEST_F(TrackEditorTest, UnreadableFileLeavesTheEditorCleared)
{
    loadDemo();
    clearMessages();
    root()->getAutomation()->answerFile("/nonexistent/walk.anim");
    button("load")->click();
    expectLogged("Open world error:/nonexistent/walk.anim");
    EXPECT_TRUE(AppData::get()->isEmpty());
    EXPECT_EQ(messages(), std::vector<int>{211});
}

TEST_F(TrackEditorTest, SavingANewTrackAsksForAFileAndAddsTheExtension)
{
    TempDir dir;
    loadDemo();
    AppData::get()->reset(); // a new document: no path
    AppData::get()->getTrack()->getEngineTrack()->setEndTime(4.0f);
    root()->getAutomation()->answerFile(dir.file("fresh").c_str());
    button("save")->click();
    EXPECT_NE(readFileText(dir.file("fresh.anim")), "<missing>");
    EXPECT_EQ(AppData::get()->getPath(), dir.file("fresh.anim").c_str());
    EXPECT_EQ(messages().back(), 209);
}

TEST_F(TrackEditorTest, ANameHoldingTheExtensionIsKeptAsItIs)
{
    TempDir dir;
    root()->getAutomation()->answerFile(dir.file("walk.anim.bak").c_str());
    button("save")->click();
    EXPECT_NE(readFileText(dir.file("walk.anim.bak")), "<missing>");
    EXPECT_EQ(readFileText(dir.file("walk.anim.bak.anim")), "<missing>");
}

TEST_F(TrackEditorTest, SavingAnUnchangedFileDoesNothing)
{
    TempDir dir;
    std::string path = dir.file("copy.anim");
    ASSERT_TRUE(writeFileText(path, readFileText(samplePath("demo.anim"))));
    root()->getAutomation()->answerFile(path.c_str());
    editor()->setWorld(demoWorld());
    button("load")->click();
    ASSERT_TRUE(writeFileText(path, "sentinel"));
    clearMessages();
    button("save")->click();
    EXPECT_EQ(readFileText(path), "sentinel");
    EXPECT_TRUE(messages().empty());
    MsgMngr::get()->notifyHelper(200);
    button("save")->click();
    EXPECT_EQ(readFileText(path), readFileText(samplePath("demo.anim")));
    EXPECT_EQ(title(), (path + " - Anim").c_str());
}

TEST_F(TrackEditorTest, OnlyPlayAndLoopAreToggles)
{
    EXPECT_TRUE(button("time_play")->isCheckEnable());
    EXPECT_TRUE(button("time_loop")->isCheckEnable());
    for (const char* name : {"time_prev", "time_next", "setting", "load", "save", "clear"})
        EXPECT_FALSE(button(name)->isCheckEnable()) << name;
    EXPECT_EQ(button("save")->getShortcut().key, 'S');
    EXPECT_TRUE(button("save")->getShortcut().ctrl);
}
