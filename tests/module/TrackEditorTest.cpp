// The Track Editor window: its title, commands, playback, and views kept in step by host messages.
#include "ui/TrackEditor.h"

#include <cmath>
#include <cstdlib>
#include <random>

#include "ModuleFixture.h"
#include "TrackEditorGltf.h"
#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "anim/TrackParameterFloat.h"
#include "data/FKeyFloat.h"
#include "data/FParameterSingle.h"
#include "data/FParameterFloat.h"
#include "editor/ButtonLookup.h"
#include "editor/Clipboard.h"
#include "editor/Locale.h"
#include "editor/ToolButton.h"
#include "kit/KeyState.h"
#include "msg/MsgMngr.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "ui/UIAutomation.h"
#include "ui/SettingsPanel.h"
#include "ui/TimeRangeView.h"
#include "ui/UIButton.h"
#include "ui/UICanvas.h"
#include "ui/UICheckBox.h"
#include "ui/UIEditLine.h"
#include "ui/UIEditLineWheel.h"
#include "ui/UIGridLayout.h"
#include "ui/UIScrollBox.h"
#include "ui/UITimeBar.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {

constexpr float FRAME = 1.0f / 60.0f;

// A whole number from the environment, or fallback when the variable is not set.
unsigned envNumber(const char* name, unsigned fallback)
{
    const char* text = std::getenv(name);
    return text ? unsigned(std::strtoul(text, nullptr, 10)) : fallback;
}

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
    // Queues the answers of a picker session: "choose A.b", "select A", "press key", "find text",
    // "ok", "cancel", "yes" or "no".
    void answer(const std::vector<std::string>& answers)
    {
        UIAutomation* automation = root()->getAutomation();
        for (const std::string& a : answers) {
            const size_t space = a.find(' ');
            const std::string verb = a.substr(0, space);
            const std::string arg = space == std::string::npos ? "" : a.substr(space + 1);
            if (verb == "choose")
                automation->answerTreeItem(arg.c_str());
            else if (verb == "select")
                automation->answerSelectItem(arg.c_str());
            else if (verb == "press")
                automation->answerButton(tr(arg.c_str()));
            else if (verb == "ok" || verb == "yes")
                verb == "ok" ? automation->answerOk() : automation->answerYes();
            else
                verb == "no" ? automation->answerNo() : automation->answerCancel();
        }
    }
    // Makes row i current and selected as a click would.
    void selectRow(int i)
    {
        rows()->select(rows()->getRows()[i]);
        MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
        frame();
    }
    // What the node panel shows: the texts of its fields, or nothing while it is hidden.
    std::vector<std::string> nodeInfo() const
    {
        const UIElement* grid = find<UIGridLayout>(m_editor);
        std::vector<std::string> texts;
        for (int i = 0; grid && !grid->getParent()->isHidden() && i < grid->getNumChilds(); ++i)
            if (const auto* field = dynamic_cast<const UIEditLine*>(grid->getChild(i)))
                texts.push_back(field->getText().c_str());
        return texts;
    }
    template <class T>
    static const T* find(const UIElement* e)
    {
        if (const auto* found = dynamic_cast<const T*>(e))
            return found;
        for (int i = 0; i < e->getNumChilds(); ++i)
            if (const T* found = find<T>(e->getChild(i)))
                return found;
        return nullptr;
    }
    // Types text into key field i (0: time, 1: value) as a user would, and presses Enter.
    void typeInto(int i, const char* text)
    {
        std::vector<const UIEditLineWheel*> fields;
        collect(m_editor, fields);
        int x = 0, y = 0;
        root()->getAutomation()->elementPoint(fields[i], fields[i]->getWidth() - 12, fields[i]->getHeight() / 2, x, y);
        ASSERT_TRUE(root()->getAutomation()->click(x, y));
        ASSERT_TRUE(root()->getAutomation()->typeText(text));
        ASSERT_TRUE(root()->getAutomation()->keyPress(UI_KEY_ENTER));
    }
    template <class T>
    static void collect(const UIElement* e, std::vector<const T*>& found)
    {
        if (const auto* t = dynamic_cast<const T*>(e))
            found.push_back(t);
        for (int i = 0; i < e->getNumChilds(); ++i)
            collect(e->getChild(i), found);
    }
    std::string fieldText(int i) const
    {
        std::vector<const UIEditLineWheel*> fields;
        collect(m_editor, fields);
        return fields[i]->getText().c_str();
    }
    bool key(int code, int modifiers = 0)
    {
        UIEventKey e;
        e.key = code;
        e.modifiers = modifiers;
        return m_editor->onKeyPress(&e);
    }
    // Turns the wheel at canvas x of the key lines, holding modifiers; returns the shown range.
    std::pair<float, float> wheel(int x, int notches, int modifiers)
    {
        UIEventMouse e = mouseAt(lines()->getCanvas(), x, 5, UI_MOUSE_NONE, 0, modifiers);
        e.wheel = notches;
        EXPECT_TRUE(m_editor->onMouseWheel(&e));
        return {AppData::get()->getBeginTime(), AppData::get()->getEndTime()};
    }
    // The texts of the settings window's fields (start, end, frame rate), once it was opened.
    std::vector<std::string> settingsTexts() const
    {
        std::vector<const UIEditLineWheel*> fields;
        collect(m_editor->m_settings_panel, fields);
        std::vector<std::string> texts;
        for (const UIEditLineWheel* field : fields)
            texts.push_back(field->getText().c_str());
        return texts;
    }
    bool shown(const char* name) const
    {
        const UIElement* e = ButtonLookup::find(m_editor, name);
        for (; e; e = e->getParent())
            if (e->isHidden())
                return false;
        return true;
    }
    UITimeBar* bar() const { return static_cast<UITimeBar*>(m_editor->findView("timebar")->getParent()); }
    // One edit a user could make, drawn from random: select a few keys (or a row), then make, delete,
    // shape, nudge, type, cut, copy and paste or duplicate keys, switch the loop or the snap, a row's
    // "E" or "T" or a material row's hierarchy, or add or delete a parameter.
    void randomEdit(std::mt19937& random)
    {
        auto pick = [&](size_t n) { return int(random() % (n ? n : 1)); };
        doc()->clearMarks();
        bool marked = false;
        for (int i = 0; i < 3 && doc()->getNumSingleParameters() > 0; ++i)
            if (FParameterSingle* p = single(pick(size_t(doc()->getNumSingleParameters()))); p->getNumKeys() > 0) {
                FTrack::mark(p->getKey(pick(size_t(p->getNumKeys()))));
                marked = true;
            }
        MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
        AppData::get()->setTime(engine()->getEndTime() * float(pick(100)) / 100.0f);
        const char* const buttons[] = {"key_remove", "key_constant", "key_linear", "key_smooth",
                                       "key_break",  "key_auto",     "time_loop",  "snap"};
        switch (pick(9)) {
        case 0:
            if (rows()->getRows().empty())
                break;
            rows()->select(rows()->getRows()[pick(rows()->getRows().size())]);
            MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
            button("key")->click();
            break;
        case 1:
            button(buttons[pick(std::size(buttons))])->click();
            break;
        case 2:
            key(pick(2) ? UI_KEY_LEFT : UI_KEY_RIGHT, UI_MOD_ALT);
            break;
        case 3:
            typeInto(pick(2), std::to_string(pick(60) / 10.0).c_str());
            break;
        case 6:
            key(pick(2) ? 'D' : 'X', UI_MOD_CTRL);
            break;
        case 7:
            if (marked && key('C', UI_MOD_CTRL))
                key('V', UI_MOD_CTRL);
            break;
        case 8:
            if (rows()->getRows().empty())
                break;
            selectRow(pick(rows()->getRows().size()));
            if (shown("apply_hierarchy") && pick(2))
                static_cast<UICheckBox*>(ButtonLookup::find(m_editor, "apply_hierarchy"))->click();
            else
                rows()->getCurrent()->toggleColumn(pick(2));
            break;
        case 4:
            answer({"choose Render.exposure"});
            button("new_track")->click();
            break;
        default:
            if (rows()->getRows().empty())
                break;
            rows()->select(rows()->getRows()[pick(rows()->getRows().size())]);
            MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
            answer({"yes"});
            button("del_track")->click();
        }
    }
    UITrackRowPanel* rows() const { return UITrackRowPanel::get(); }
    UITrackLinePanel* lines() const { return UITrackLinePanel::get(); }
    // Each row's name and colour, top to bottom.
    std::vector<std::string> rowLooks() const
    {
        std::vector<std::string> looks;
        for (UITrackRow* row : rows()->getRows())
            looks.push_back(std::string(row->getName().c_str()) + " " + std::to_string(row->getColor().x) + " " +
                            std::to_string(row->getColor().z));
        return looks;
    }

    TrackEditor* m_editor = nullptr;
};

// The title names the file (or a new track) and marks unsaved changes; a cancelled load keeps both,
// an unreadable file leaves the editor cleared.
TEST_F(TrackEditorTest, TitleShowsTheDocumentAndItsModifiedMark)
{
    EXPECT_EQ(title(), "Anim - New Track");
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_NEW); // announced, but the file would not change
    EXPECT_EQ(title(), "Anim - New Track");
    engine()->setEndTime(4.0f);
    MsgMngr::get()->notifyHelper(TRACK_MSG_LIMITS_CHANGED);
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
    button("time_loop")->click();
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
    EXPECT_EQ(title(), "Anim - New Track"); // nothing was deleted
}

// An open settings window follows the document: a load or a clear replaces the times it shows.
TEST_F(TrackEditorTest, TheSettingsWindowShowsTheTimesOfTheDocument)
{
    button("setting")->click();
    EXPECT_EQ(settingsTexts(), (std::vector<std::string>{"0", "10", "0"}));
    loadDemo();
    AppData::get()->setFrameRate(25.0f);
    button("setting")->click(); // shows the document again
    EXPECT_EQ(settingsTexts(), (std::vector<std::string>{"0", "6", "25"}));
    button("clear")->click();
    EXPECT_EQ(settingsTexts(), (std::vector<std::string>{"0", "10", "0"}));
}

// Times show to the frame (to four decimals without a frame rate) and read back as typed, in
// seconds or in frames; text that is no time changes nothing.
TEST_F(TrackEditorTest, TimeFieldsShowTheFrameAndReadSecondsOrFrames)
{
    loadDemo();
    AppData::get()->setTime(0.465f);
    frame();
    EXPECT_EQ(fieldText(4), "0.465");
    AppData::get()->setFrameRate(24.0f);
    frame();
    EXPECT_EQ(fieldText(4), "0.4583");
    struct Typed {
        const char* text;
        float time;
        const char* shown;
    } typed[] = {{"36f", 1.5f, "1.5"}, {"1.25", 1.25f, "1.25"}, {" 2.25s ", 2.25f, "2.25"}, {"abc", 2.25f, "2.25"},
                 {"3x", 2.25f, "2.25"}, {"12F", 0.5f, "0.5"}};
    for (const Typed& t : typed) {
        SCOPED_TRACE(t.text);
        typeInto(4, t.text);
        EXPECT_EQ(AppData::get()->getTime(), t.time);
        EXPECT_EQ(fieldText(4), t.shown);
        m_editor->setFocus(); // the next click starts a new text
    }
}

// Without the mouse: Space plays and stops, End and Home jump, Right steps a whole frame, Alt+Right
// nudges the selected key a frame, Ctrl+A selects every key and Escape none.
TEST_F(TrackEditorTest, KeysPlayStepAndSelectWhereverTheFocusIs)
{
    loadDemo();
    AppData::get()->setFrameRate(24.0f);
    AppData::get()->setTime(0.03f);
    EXPECT_TRUE(key(UI_KEY_RIGHT));
    EXPECT_FLOAT_EQ(AppData::get()->getTime(), 2.0f / 24.0f);
    EXPECT_FLOAT_EQ(bar()->getTime(), 2.0f / 24.0f);
    EXPECT_TRUE(key(UI_KEY_END));
    EXPECT_EQ(AppData::get()->getTime(), 6.0f);
    EXPECT_TRUE(key(UI_KEY_HOME));
    EXPECT_EQ(AppData::get()->getTime(), 0.0f);
    EXPECT_TRUE(key(UI_KEY_SPACE));
    EXPECT_TRUE(m_editor->isPlay());
    EXPECT_TRUE(key(UI_KEY_SPACE));
    EXPECT_FALSE(m_editor->isPlay());

    FKey* intensityKey = single(11)->getKey(1);
    const float was = intensityKey->getTime();
    FTrack::mark(intensityKey);
    EXPECT_TRUE(key(UI_KEY_RIGHT, UI_MOD_ALT));
    EXPECT_FLOAT_EQ(intensityKey->getTime(), was + 1.0f / 24.0f);
    int keys = 0;
    for (FParameterSingle* parameter : doc()->getSingleParameters())
        keys += parameter->getNumKeys();
    EXPECT_TRUE(key('A', UI_MOD_CTRL));
    EXPECT_EQ(lines()->getSelectedKeys().size(), keys);
    EXPECT_TRUE(key(UI_KEY_ESCAPE));
    EXPECT_TRUE(lines()->getSelectedKeys().empty());
    EXPECT_FALSE(key('Q'));
}

// The snap button lands the play head and made keys on whole frames; Ctrl inverts it for a gesture.
TEST_F(TrackEditorTest, SnappingLandsThePlayHeadAndMadeKeysOnWholeFrames)
{
    loadDemo();
    AppData::get()->setFrameRate(24.0f);
    button("snap")->click();
    EXPECT_TRUE(AppData::get()->isSnapping());
    frame();
    UICanvas* canvas = bar()->getCanvas();
    const UIEventMouse press = mouseAt(canvas, canvas->getWidth() / 3 + 1, canvas->getHeight() / 2);
    bar()->onMouseDown(&press);
    const float t = AppData::get()->getTime();
    EXPECT_GT(t, 1.0f);
    EXPECT_FLOAT_EQ(t * 24.0f, std::round(t * 24.0f));
    selectRow(11);
    struct Made {
        bool snap, ctrl;
        float time;
    } made[] = {{true, false, 0.5f}, {true, true, 0.51f}, {false, false, 0.51f}, {false, true, 0.5f}};
    for (const Made& m : made) {
        if (AppData::get()->isSnapping() != m.snap)
            button("snap")->click();
        AppData::get()->setTime(0.51f);
        SetKeyState(VK_CONTROL, m.ctrl);
        button("key")->click();
        SetKeyState(VK_CONTROL, false);
        EXPECT_EQ((*single(11)->getKeySet().begin())->getTime(), m.time) << m.snap << m.ctrl;
    }
}

// Ctrl+wheel zooms the shown range about the pointer (the time under it stays), never past an
// empty or inverted range nor beyond the track; Shift+wheel pans; F frames the selected keys and
// Shift+Home shows the whole track.
TEST_F(TrackEditorTest, WheelZoomsAboutThePointerAndKeysFrameTheRange)
{
    loadDemo();
    frame();
    const int w = lines()->getCanvas()->getWidth();
    const int x = 6 + (w - 12) / 4;
    const float under = UITrackLinePanel::pixelToTime(x, 0.0f, 6.0f, w);
    auto [begin, end] = wheel(x, 3, UI_MOD_CTRL);
    EXPECT_LT(end - begin, 6.0f * 0.52f);
    EXPECT_NEAR(UITrackLinePanel::pixelToTime(x, begin, end, w), under, 1e-4f);
    EXPECT_EQ(bar()->getBegin(), begin);
    for (int i = 0; i < 40; ++i)
        std::tie(begin, end) = wheel(x, 1, UI_MOD_CTRL);
    EXPECT_NEAR(end - begin, TimeRangeView::MIN_SPAN, 1e-6f);
    EXPECT_NEAR(UITrackLinePanel::pixelToTime(x, begin, end, w), under, 1e-3f);
    const float zoomed = begin;
    std::tie(begin, end) = wheel(x, -1, UI_MOD_SHIFT);
    EXPECT_NEAR(begin - zoomed, 0.1f * TimeRangeView::MIN_SPAN, 1e-5f);
    std::tie(begin, end) = wheel(x, -90, UI_MOD_CTRL);
    EXPECT_EQ(std::make_pair(begin, end), std::make_pair(0.0f, 6.0f));

    FTrack::mark(single(11)->getKey(1));
    FTrack::mark(single(11)->getKey(2));
    EXPECT_TRUE(key('F'));
    const float from = single(11)->getKey(1)->getTime(), to = single(11)->getKey(2)->getTime();
    EXPECT_NEAR(AppData::get()->getBeginTime(), from - (to - from) * 0.05f, 1e-5f);
    EXPECT_NEAR(AppData::get()->getEndTime(), to + (to - from) * 0.05f, 1e-5f);
    EXPECT_TRUE(key(UI_KEY_HOME, UI_MOD_SHIFT));
    EXPECT_EQ(AppData::get()->getEndTime(), 6.0f);
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
    button("time_loop")->click();
    button("time_loop")->click(); // two steps that end where the file is: still a change to save
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

// A failed save still posts 209 and clears the mark, but the edits stay unsaved and the host's
// listener hears of the failure, and of the clear that then drops them; a save as takes the file.
TEST_F(TrackEditorTest, AFailedSaveKeepsTheEditsUnsavedAndTellsTheHost)
{
    using Heard = std::vector<std::pair<int, std::string>>;
    Heard heard;
    auto listen = [](void* context, TrackFileEvent event, const char* path) {
        static_cast<Heard*>(context)->emplace_back(event, path);
    };
    m_editor->setFileListener(listen, &heard);
    TempDir dir;
    std::string missing = dir.file("missing-folder/out.anim"), good = dir.file("out.anim");
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
    root()->getAutomation()->answerFile(missing.c_str());
    button("save")->click();
    expectLogged("missing-folder/out.anim");
    EXPECT_EQ(messages().back(), TRACK_MSG_SAVED);
    EXPECT_EQ(title(), "Anim - New Track");
    EXPECT_TRUE(m_editor->hasUnsavedEdits());
    button("clear")->click();
    EXPECT_FALSE(m_editor->hasUnsavedEdits());
    EXPECT_EQ(heard, (Heard{{TRACK_FILE_SAVE_FAILED, missing}, {TRACK_FILE_DISCARDING, ""}}));
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_CHANGED);
    EXPECT_TRUE(m_editor->saveAs(jString(good.c_str())));
    EXPECT_FALSE(m_editor->hasUnsavedEdits());
    EXPECT_EQ(title(), (good + " - Anim").c_str());
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
    // Hovering a row names what it is bound to, so rows of one name can be told apart.
    const std::pair<int, const char*> tips[] = {
        {1, "Crate (Node.position)"}, {14, "Render.exposure"}, {16, "material metal, roughness (Material.float)"}};
    for (const auto& [row, tip] : tips) {
        rows()->getScroll()->setVScrollValue((row - 1) * UITrackRow::ROW_PITCH);
        frame();
        const UIEventMouse hover = mouseAt(rows()->getCanvas(), 20, row * UITrackRow::ROW_PITCH + 11, UI_MOUSE_NONE, 0);
        rows()->onMouseMove(&hover);
        EXPECT_EQ(rows()->getTooltip(), tip);
    }
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
    // A light line crosses the key lines at the current time, two thirds into the shown range.
    frame();
    UICanvas* keyLines = lines()->getCanvas();
    const int x = UITrackLinePanel::timeToPixel(3.0f, 1.0f, 4.0f, keyLines->getWidth());
    EXPECT_GT(pixel(keyLines, x, 81).x, pixel(keyLines, x + 4, 81).x + 0.3f);
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
    // A curve shown now marks its keys in the curve view with the selection they have.
    FParameterSingle* hidden = single(2);
    ASSERT_FALSE(UITrackCurvePanel::get()->isShown(hidden->getCurve()));
    ASSERT_GE(hidden->getNumKeys(), 2);
    hidden->getKeySet().insert(hidden->getKey(1));
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    hidden->getRow()->toggleColumn(1);
    ASSERT_NE(hidden->getKey(0)->getCurveKey(), nullptr);
    EXPECT_TRUE(UITrackCurvePanel::get()->getSelectedKeys().contains(hidden->getKey(1)->getCurveKey()));
    EXPECT_FALSE(UITrackCurvePanel::get()->getSelectedKeys().contains(hidden->getKey(0)->getCurveKey()));
    EXPECT_TRUE(UITrackCurvePanel::get()->getSelectedKeys().contains(y->getKey(2)->getCurveKey()));
    hidden->getKeySet().clear();
    hidden->getRow()->toggleColumn(1);
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);

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

// Each way of adding a parameter, answered as a user would: the parameter is bound to what the
// pickers chose, and its rows read as they will when the file is opened again. Cancelling any
// picker, or choosing a material parameter no track can animate, adds nothing and changes nothing.
TEST_F(TrackEditorTest, NewParametersAreBoundToWhatThePickersChose)
{
    struct Case {
        std::vector<std::string> answers;
        const char* type; // null: nothing is added
        int node, internal;
        const char* row;
        const char* material;
    };
    const Case cases[] = {
        {{"choose Node.position", "choose Crate"}, "Node.position", 20, -1, "position", ""},
        {{"choose Light.color", "choose Spot"}, "Light.color", 5, -1, "color", ""},
        {{"choose Camera.fov", "choose __EDITOR_CAMERA__"}, "Camera.fov", World::EDITOR_CAMERA_ID, -1, "fov", ""},
        {{"choose Node.enabled", "select Lamp.001", "press internal_node", "choose LampBulb"}, "Node.enabled", 13, 15,
         "enabled", ""},
        {{"choose Render.exposure"}, "Render.exposure", -1, -1, "exposure", ""},
        {{"choose Track.play"}, "Track.play", -1, -1, "Name", ""},
        {{"choose Material.float", "choose surface.metal", "choose roughness"}, "Material.float", -1, -1, "roughness",
         "metal"},
        {{"choose Material.vec3", "choose surface", "choose specular_tint"}, "Material.vec3", -1, -1, "specular_tint",
         "surface"},
        {{"cancel"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Node", "ok"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Node.position", "cancel"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Node.position", "select Lamp", "press internal_node", "cancel"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Material.float", "cancel"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Material.float", "choose surface", "cancel"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Material.float", "choose surface", "choose uv_scale", "ok"}, nullptr, 0, 0, nullptr, nullptr},
        {{"choose Material.float", "choose glass", "choose cull_mode"}, nullptr, 0, 0, nullptr, nullptr},
    };
    m_editor->setWorld(demoWorld());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.answers.front() + " ... " + c.answers.back());
        AppData::get()->reset();
        clearMessages();
        answer(c.answers);
        button("new_track")->click();
        EXPECT_EQ(root()->getAutomation()->pendingAnswers(), 0);
        if (!c.type) {
            EXPECT_TRUE(AppData::get()->isEmpty());
            EXPECT_TRUE(messages().empty());
            continue;
        }
        ASSERT_EQ(engine()->getNumParameters(), 1);
        const TrackParameter* made = engine()->getParameter(0);
        EXPECT_EQ(made->getTypeName(), c.type);
        EXPECT_EQ(made->getNodeID(), c.node);
        EXPECT_EQ(made->getInternalNodeID(), c.internal);
        EXPECT_EQ(made->getMaterialName(), c.material);
        EXPECT_EQ(single(0)->getRow()->getName(), c.row);
        EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_PARAMETER_NEW});
    }
    expectLogged("TrackEditor::select_material_helper:material param type not supported \"5\"");
}

// The node panel shows the current row's binding. "select_node" binds the row's parameter (a vector
// through any of its axes) to another node; deleting asks first and takes a vector with all its axes.
TEST_F(TrackEditorTest, TheCurrentRowsParameterIsShownReboundAndDeleted)
{
    loadDemo();
    frame();
    EXPECT_TRUE(nodeInfo().empty());
    selectRow(1);
    EXPECT_EQ(nodeInfo(), (std::vector<std::string>{"Crate", "20", "ObjectMesh", "Node.position"}));
    EXPECT_TRUE(shown("select_node"));
    EXPECT_FALSE(shown("apply_hierarchy"));
    clearMessages();
    answer({"choose Pillar"});
    static_cast<UIButton*>(ButtonLookup::find(m_editor, "select_node"))->click();
    frame();
    EXPECT_EQ(doc()->getParameters()[0]->getTrackParameter()->getNodeID(), 2);
    EXPECT_EQ(nodeInfo()[0], "Pillar");
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_BINDING_CHANGED});

    selectRow(16); // the metal's roughness
    EXPECT_EQ(nodeInfo(), (std::vector<std::string>{"roughness", "-1", "Material", "Material.float"}));
    EXPECT_FALSE(shown("select_node"));
    ASSERT_TRUE(shown("apply_hierarchy"));
    static_cast<UICheckBox*>(ButtonLookup::find(m_editor, "apply_hierarchy"))->click();
    EXPECT_TRUE(single(16)->isMaterialHierarchy());

    const int before = engine()->getNumParameters();
    selectRow(2); // an axis of the crate's position
    answer({"no"});
    button("del_track")->click();
    EXPECT_EQ(engine()->getNumParameters(), before);
    answer({"yes"});
    clearMessages();
    button("del_track")->click();
    EXPECT_EQ(engine()->getNumParameters(), before - 1);
    EXPECT_EQ(doc()->getSingleParameters().size(), 20);
    EXPECT_EQ(rows()->getRows().size(), 20);
    EXPECT_EQ(messages(), std::vector<int>{TRACK_MSG_PARAMETER_DELETED});
    frame();
    EXPECT_TRUE(nodeInfo().empty());
    button("del_track")->click(); // nothing selected: nothing asked, nothing deleted
    EXPECT_EQ(engine()->getNumParameters(), before - 1);
}

// The key commands act on the keys the user sees selected and reach the engine at once: Ctrl+K
// makes a key at the current time on every selected row (twice: two keys at one time), the new key
// is the only one selected, the type buttons shape it, the fields move it and set its value, and
// Delete frees it.
TEST_F(TrackEditorTest, KeyCommandsActOnTheSelectedKeysAndReachTheEngine)
{
    loadDemo();
    FParameterSingle* intensity = single(11);
    const auto* engineKeys = static_cast<const TrackParameterFloat*>(intensity->getTrackParameter());
    const int before = intensity->getNumKeys();
    AppData::get()->setTime(0.5f);
    selectRow(11);
    clearMessages();
    button("key")->click();
    button("key")->click();
    ASSERT_EQ(intensity->getNumKeys(), before + 2);
    EXPECT_EQ(engineKeys->getNumKeys(), before + 2);
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_KEY_MADE, TRACK_MSG_KEY_MADE}));
    ASSERT_EQ(intensity->getKeySet().size(), 1);
    FKey* made = *intensity->getKeySet().begin();
    EXPECT_FLOAT_EQ(made->getTime(), 0.5f);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 1);

    auto engineKey = [&]() { return engineKeys->getKey(intensity->getKeys().find(made)); };
    const char* buttons[] = {"key_constant", "key_linear", "key_smooth", "key_break", "key_auto"};
    for (int kind = 0; kind < 5; ++kind) {
        SCOPED_TRACE(buttons[kind]);
        button(buttons[kind])->click();
        EXPECT_EQ(static_cast<FKeyFloat*>(made)->getKeyType(), kind);
        EXPECT_EQ(engineKey().type, kind);
    }
    EXPECT_EQ(messages().back(), TRACK_MSG_KEYS_CHANGED);

    typeInto(0, "9"); // past the track's end
    EXPECT_FLOAT_EQ(made->getTime(), engine()->getEndTime());
    EXPECT_FLOAT_EQ(engineKey().time, engine()->getEndTime());
    typeInto(1, "2.5");
    EXPECT_FLOAT_EQ(engineKey().value, 2.5f);

    UIEventKey del;
    del.key = UI_KEY_DELETE;
    m_editor->onKeyPress(&del);
    EXPECT_EQ(intensity->getNumKeys(), before + 1);
    EXPECT_EQ(engineKeys->getNumKeys(), before + 1);
    EXPECT_TRUE(lines()->getSelectedKeys().empty());

    // A material key met first in the walk stops the type buttons there, posting nothing.
    single(13)->getKeySet().insert(single(13)->getKey(0));
    auto* roughness = static_cast<FKeyFloat*>(single(16)->getKey(0));
    single(16)->getKeySet().insert(roughness);
    const int kind = roughness->getKeyType();
    clearMessages();
    button(kind == TRACK_KEY_CONSTANT ? "key_linear" : "key_constant")->click();
    EXPECT_EQ(roughness->getKeyType(), kind);
    EXPECT_TRUE(messages().empty());

    // On several rows, every new key is selected.
    jSet<UITrackRow*> axes;
    for (int i = 0; i < 3; ++i)
        axes.insert(rows()->getRows()[i]);
    rows()->setSelected(axes);
    MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
    button("key")->click();
    EXPECT_EQ(lines()->getSelectedKeys().size(), 3);
    EXPECT_EQ(single(0)->getKeySet().size() + single(1)->getKeySet().size() + single(2)->getKeySet().size(), 3);
    EXPECT_TRUE(single(16)->getKeySet().empty());
}

// The curve view shares its key selection with the key lines both ways, drags the selected keys in
// time and value as one block that the engine follows, frames what the buttons ask, and zooms
// about the pointer.
TEST_F(TrackEditorTest, TheCurveViewSelectsDragsAndFramesKeys)
{
    loadDemo();
    frame();
    UITrackCurvePanel* panel = UITrackCurvePanel::get();
    FParameterSingle* fov = single(12); // "Camera breathe", shown
    ASSERT_TRUE(panel->isShown(fov->getCurve()));
    UICanvas* canvas = panel->getCanvas();
    const UITrackCurveMapping& map = panel->getMapping();
    auto at = [&](UITrackCurveKey* point, int dx = 0, int dy = 0) {
        return mouseAt(canvas, int(std::lround(map.xOfTime(point->getTime()))) + dx,
                       int(std::lround(map.yOfValue(point->getValue()))) + dy);
    };
    UITrackCurveKey* second = fov->getCurve()->getKeys()[1];
    FParameterSingle* enabled = single(3); // a switch: its keys have no curve
    ASSERT_EQ(enabled->getCurve(), nullptr);
    FTrack::mark(enabled->getKey(0));
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    ASSERT_EQ(lines()->getSelectedKeys().size(), 1);
    clearMessages();
    const UIEventMouse press = at(second); // a plain click: the switch's key is no longer selected
    ASSERT_TRUE(panel->onMouseDown(&press));
    EXPECT_EQ(messages(), (std::vector<int>{TRACK_MSG_SELECTION_LISTS, TRACK_MSG_CURVE_SELECTION}));
    EXPECT_EQ(lines()->getSelectedKeys().size(), 1);
    EXPECT_TRUE(lines()->getSelectedKeys().contains(second->getKey()->getLineKey()));
    EXPECT_TRUE(rows()->getSelected().contains(fov->getRow()));

    const float time = second->getTime();
    const double value = second->getValue();
    const UIEventMouse move = at(second, 30, -20);
    panel->onMouseMove(&move);
    panel->onMouseUp(&move);
    const float movedTime = second->getTime();
    EXPECT_NEAR(movedTime - time, 30.0 * map.timePerPixel(), 1e-4);
    EXPECT_NEAR(second->getValue() - value, 20.0 * map.valuePerPixel(), 1e-3);
    bool found = false;
    EXPECT_NEAR(static_cast<const TrackParameterFloat*>(fov->getTrackParameter())->getTrackValue(movedTime, found),
                second->getValue(), 1e-4);
    EXPECT_EQ(messages().back(), TRACK_MSG_KEYS_MOVED);

    fov->getKeySet().clear();
    single(0)->getKeySet().insert(single(0)->getKey(1));
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
    UITrackCurveKey* other = single(0)->getKey(1)->getCurveKey();
    EXPECT_TRUE(panel->getSelectedKeys().contains(other));

    button("arrange_y")->click(); // frames the selected key's value
    EXPECT_NEAR(map.yOfValue(other->getValue()), map.getHeight() / 2.0, 1.0);
    const float before = AppData::get()->getEndTime() - AppData::get()->getBeginTime();
    UIEventMouse wheel = mouseAt(canvas, canvas->getWidth() / 2, canvas->getHeight() / 2);
    wheel.wheel = 1;
    const double under = map.timeOfX(canvas->getWidth() / 2);
    ASSERT_TRUE(panel->onMouseWheel(&wheel));
    frame();
    EXPECT_LT(AppData::get()->getEndTime() - AppData::get()->getBeginTime(), before);
    EXPECT_NEAR(map.timeOfX(canvas->getWidth() / 2), under, map.timePerPixel());

    // Framed whole, a box across the view takes every shown key, in the key lines too.
    panel->setSelectedKeys(jVector<UITrackCurveKey*>());
    button("arrange_xy")->click();
    frame();
    int shownKeys = 0;
    for (UITrackCurve* curve : panel->getShownCurves())
        shownKeys += curve->getKeys().size();
    const UIEventMouse corner = mouseAt(canvas, 1, 1);
    const UIEventMouse across = mouseAt(canvas, canvas->getWidth() - 1, canvas->getHeight() - 1);
    panel->onMouseDown(&corner);
    panel->onMouseMove(&across);
    panel->onMouseUp(&across);
    EXPECT_EQ(panel->getSelectedKeys().size(), shownKeys);
    EXPECT_EQ(lines()->getSelectedKeys().size(), shownKeys);
    // A middle drag carries the value under the pointer with it.
    const double held = map.valueOfY(100.0);
    const UIEventMouse middle = mouseAt(canvas, 50, 100, UI_MOUSE_MIDDLE, 1 << UI_MOUSE_MIDDLE);
    const UIEventMouse lower = mouseAt(canvas, 50, 120, UI_MOUSE_NONE, 1 << UI_MOUSE_MIDDLE);
    panel->onMouseDown(&middle);
    panel->onMouseMove(&lower);
    panel->onMouseUp(&lower);
    EXPECT_NEAR(map.valueOfY(120.0), held, 1e-6 * std::fabs(held) + 1e-9);
}

// Dragging a handle shapes its side of the key: a break key moves that handle alone; an automatic
// or smooth key turns the other handle with it, keeping its length (and a smooth key then keeps
// its handles as a break key). The engine follows at once.
TEST_F(TrackEditorTest, CurveHandlesShapeTheirKeysSides)
{
    loadDemo();
    FParameterSingle* fov = single(12);
    auto* key = static_cast<FKeyFloat*>(fov->getKey(1));
    const struct {
        int type;
        bool turns;
        int after;
    } cases[] = {{TRACK_KEY_BREAK, false, TRACK_KEY_BREAK},
                 {TRACK_KEY_AUTO, true, TRACK_KEY_AUTO},
                 {TRACK_KEY_SMOOTH, true, TRACK_KEY_BREAK}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.type);
        key->setKeyType(c.type);
        key->setTangents(vec4(-1.0f, 0.0f, 1.0f, 0.0f));
        fov->applyKeys();
        fov->getKeySet().clear();
        fov->getKeySet().insert(key);
        MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
        frame();
        UITrackCurveKey* point = key->getCurveKey();
        ASSERT_NE(point->getHandlePolygon(UITrackCurveKey::SIDE_OUT), -1);
        const vec3 dot = point->getHandlePoint(UITrackCurveKey::SIDE_OUT);
        UITrackCurvePanel* panel = UITrackCurvePanel::get();
        const UIEventMouse press = mouseAt(panel->getCanvas(), int(dot.x), int(dot.y));
        const UIEventMouse move = mouseAt(panel->getCanvas(), int(dot.x), int(dot.y) - 20);
        ASSERT_TRUE(panel->onMouseDown(&press));
        panel->onMouseMove(&move);
        panel->onMouseUp(&move);
        const vec4 t = key->getTangents();
        EXPECT_GT(t.w, 0.0f);
        EXPECT_EQ(key->getKeyType(), c.after);
        EXPECT_NEAR(std::hypot(t.x, t.y), 1.0f, 1e-4f);
        if (c.turns)
            EXPECT_NEAR(t.x * t.w - t.y * t.z, 0.0f, 1e-4f); // the two handles on one line
        else
            EXPECT_EQ(t.y, 0.0f);
        const auto* engine = static_cast<const TrackParameterFloat*>(fov->getTrackParameter());
        EXPECT_EQ(engine->getKey(1).tangents.w, t.w);
        EXPECT_EQ(engine->getKey(1).type, c.after);
    }
}

// The glTF commands: an export of the demo's node animation comes back added to the document or
// in place of its parameters, as an edit of the same file; a bad file changes nothing.
TEST_F(TrackEditorTest, GltfImportAddsOrReplacesParametersAsAnEditOfTheDocument)
{
    loadDemo();
    TempDir dir;
    std::string glb = dir.file("demo.glb");
    ASSERT_TRUE(TrackEditorGltf::exportFile(m_editor, glb.c_str()));
    expectLogged("parameter \"Sun colour\" (Light.color) is not exported");
    int count = engine()->getNumParameters();
    size_t rows = doc()->getSingleParameters().size();
    ASSERT_TRUE(TrackEditorGltf::importFile(m_editor, glb.c_str(), false));
    EXPECT_EQ(engine()->getNumParameters(), count + 3);
    EXPECT_EQ(doc()->getSingleParameters().size(), rows + 9); // a key line for each component
    EXPECT_EQ(title(), (samplePath("demo.anim") + " - Anim*").c_str());
    EXPECT_TRUE(m_editor->hasUnsavedEdits());
    EXPECT_EQ(button("undo")->getTooltip(), "Undo Import glTF animation (Ctrl+Z)");
    ASSERT_TRUE(m_editor->undo()); // an import is one step
    EXPECT_EQ(engine()->getNumParameters(), count);
    EXPECT_FALSE(m_editor->hasUnsavedEdits());
    ASSERT_TRUE(m_editor->redo());
    ASSERT_TRUE(TrackEditorGltf::importFile(m_editor, glb.c_str(), true));
    ASSERT_EQ(engine()->getNumParameters(), 3);
    EXPECT_EQ(engine()->getParameter(1)->getTypeName(), jString("Node.rotation"));
    EXPECT_EQ(AppData::get()->getPath(), jString(samplePath("demo.anim").c_str()));
    EXPECT_FALSE(TrackEditorGltf::importFile(m_editor, samplePath("demo.anim").c_str(), true));
    expectLogged(samplePath("demo.anim") + ": not a readable glTF file");
    EXPECT_EQ(engine()->getNumParameters(), 3);
}

// Every edit is one step of the history, a drag over many moves included: undoing every step gives
// back the loaded file's bytes and takes the title's mark away, redoing them gives back the edited
// bytes. The buttons name the step they would act on and are greyed out without one; a new edit
// drops the undone steps.
TEST_F(TrackEditorTest, UndoAndRedoWalkTheEditsOneUserActionAtATime)
{
    loadDemo();
    frame();
    const jString clean = title();
    std::string loaded, edited, now;
    ASSERT_TRUE(AppData::get()->snapshot(loaded));
    EXPECT_FALSE(button("undo")->isEnabled());
    AppData::get()->setTime(0.5f);
    selectRow(11);
    button("key")->click();
    button("key_constant")->click();
    typeInto(1, "2.5");
    key(UI_KEY_DELETE);
    UITrackCurvePanel* panel = UITrackCurvePanel::get();
    UITrackCurveKey* second = single(12)->getCurve()->getKeys()[1];
    const UITrackCurveMapping& map = panel->getMapping();
    auto at = [&](int dx) {
        return mouseAt(panel->getCanvas(), int(std::lround(map.xOfTime(second->getTime()))) + dx,
                       int(std::lround(map.yOfValue(second->getValue()))));
    };
    const UIEventMouse press = at(0), move = at(10), release = at(30);
    m_editor->onMouseDown(&press);
    m_editor->onMouseMove(&move);
    m_editor->onMouseMove(&release);
    m_editor->onMouseUp(&release);
    button("time_loop")->click();
    EXPECT_EQ(button("undo")->getTooltip(), "Undo Change option (Ctrl+Z)");
    EXPECT_EQ(title(), (std::string(clean.c_str()) + "*").c_str());
    ASSERT_TRUE(AppData::get()->snapshot(edited));

    int steps = key('Z', UI_MOD_CTRL) ? 1 : 0;
    while (m_editor->undo())
        ++steps;
    EXPECT_EQ(steps, 6); // make, constant, value, delete, drag, loop
    ASSERT_TRUE(AppData::get()->snapshot(now));
    EXPECT_EQ(now, loaded);
    EXPECT_EQ(title(), clean);
    EXPECT_TRUE(button("time_loop")->isChecked());
    EXPECT_FALSE(button("undo")->isEnabled());
    EXPECT_EQ(button("redo")->getTooltip(), "Redo Make key (Ctrl+Shift+Z)");
    key('Z', UI_MOD_CTRL | UI_MOD_SHIFT);
    while (key('Y', UI_MOD_CTRL) && button("redo")->isEnabled()) {
    }
    ASSERT_TRUE(AppData::get()->snapshot(now));
    EXPECT_EQ(now, edited);
    EXPECT_FALSE(button("time_loop")->isChecked());

    m_editor->undo();
    button("time_loop")->click();
    EXPECT_FALSE(button("redo")->isEnabled());
}

// From each sample, seeded random sequences of edits through the buttons and keys a user presses:
// undoing everything gives back the loaded bytes and rows, redoing everything the edited bytes. The seed of a
// failing sequence is printed; KUVO_UNDO_SEQUENCES and KUVO_UNDO_SEED set the count and first seed.
TEST_F(TrackEditorTest, RandomEditSequencesUndoAndRedoToTheSameBytes)
{
    const unsigned sequences = envNumber("KUVO_UNDO_SEQUENCES", 100), first = envNumber("KUVO_UNDO_SEED", 1);
    m_editor->setWorld(demoWorld());
    for (const char* sample : {"demo.anim", "pulse.anim", "lamps.anim"}) {
        const jString path(samplePath(sample).c_str());
        ASSERT_TRUE(m_editor->loadAs(path, path, false));
        std::string loaded, edited, now;
        ASSERT_TRUE(AppData::get()->snapshot(loaded));
        const std::vector<std::string> looks = rowLooks();
        unsigned steps = 0;
        for (unsigned seed = first; seed < first + sequences; ++seed) {
            SCOPED_TRACE(std::string(sample) + " seed " + std::to_string(seed));
            std::mt19937 random(seed);
            for (int i = 0; i < 6; ++i)
                randomEdit(random);
            ASSERT_TRUE(AppData::get()->snapshot(edited));
            while (m_editor->undo())
                ++steps;
            ASSERT_TRUE(AppData::get()->snapshot(now));
            ASSERT_EQ(now, loaded);
            EXPECT_EQ(rowLooks(), looks); // every row back in its place, in its colour
            EXPECT_EQ(title(), (path + " - Anim").c_str());
            while (m_editor->redo()) {
            }
            ASSERT_TRUE(AppData::get()->snapshot(now));
            ASSERT_EQ(now, edited);
            while (m_editor->undo()) {
            }
        }
        EXPECT_GT(steps, 3 * sequences) << sample; // most random edits change something
    }
}

// Copied keys keep their spacing from the first one and paste at the current time onto the rows
// they came from, selected, as one step; cut takes them away as one step; pasted into another
// track they go to the selected rows of their kind, and without such a row nothing is pasted. The
// clipboard holds their records as text.
TEST_F(TrackEditorTest, KeysAreCopiedCutPastedAndDuplicatedAsOneStepEach)
{
    loadDemo();
    FParameterSingle* intensity = single(11); // keys at 0, 0.4, 0.8, 1.2, 2 and 6 s
    const int before = intensity->getNumKeys();
    FTrack::mark(intensity->getKey(1));
    FTrack::mark(intensity->getKey(2));
    key('C', UI_MOD_CTRL);
    const std::string text = Clipboard::getText().c_str();
    EXPECT_NE(text.find("\"format\": \"kuvo-anim-keys\""), std::string::npos) << text;
    EXPECT_NE(text.find("[0.0, 1.2, -0.1, 0.4, 0.1, 0.4, 3]"), std::string::npos) << text;
    AppData::get()->setTime(3.0f);
    key('V', UI_MOD_CTRL);
    intensity = single(11);
    ASSERT_EQ(intensity->getNumKeys(), before + 2);
    EXPECT_FLOAT_EQ(intensity->getKey(5)->getTime(), 3.0f);
    EXPECT_FLOAT_EQ(intensity->getKey(6)->getTime(), 3.4f);
    EXPECT_EQ(lines()->getSelectedKeys().size(), 2);
    EXPECT_EQ(button("undo")->getTooltip(), "Undo Paste keys (Ctrl+Z)");
    key('X', UI_MOD_CTRL);
    EXPECT_EQ(single(11)->getNumKeys(), before);
    EXPECT_EQ(button("undo")->getTooltip(), "Undo Cut keys (Ctrl+Z)");
    AppData::get()->setTime(5.0f);
    key('D', UI_MOD_CTRL); // nothing is selected after the cut: nothing to duplicate
    EXPECT_EQ(single(11)->getNumKeys(), before);
    EXPECT_TRUE(m_editor->undo());
    EXPECT_EQ(single(11)->getNumKeys(), before + 2);

    // A vector's axis takes back what was copied from it.
    for (int i = 0; i < doc()->getNumSingleParameters(); ++i)
        single(i)->getKeySet().clear();
    const int axisKeys = single(1)->getNumKeys();
    FTrack::mark(single(1)->getKey(0));
    key('C', UI_MOD_CTRL);
    AppData::get()->setTime(5.5f);
    key('V', UI_MOD_CTRL);
    EXPECT_EQ(single(1)->getNumKeys(), axisKeys + 1);

    const jString other(samplePath("pulse.anim").c_str());
    ASSERT_TRUE(m_editor->loadAs(other, other, false));
    key('V', UI_MOD_CTRL);
    expectLogged("no row takes the copied keys");
    EXPECT_EQ(title(), (other + " - Anim").c_str());
    selectRow(0);
    const int keys = single(0)->getNumKeys();
    key('V', UI_MOD_CTRL);
    EXPECT_EQ(single(0)->getNumKeys(), keys + 1);
    EXPECT_EQ(title(), (other + " - Anim*").c_str());
}
