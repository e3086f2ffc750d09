#include "editor/ToolButton.h"

#include "editor/DataDir.h"
#include "ui/UIFixture.h"

#include <string>
#include <vector>

namespace {

// Records the checked state each click handler saw.
struct PlayControls {
    void cb_play(const UIEventMouse*, UIElement* sender) { seen.push_back(static_cast<ToolButton*>(sender)->isChecked()); }
    std::vector<bool> seen;
};

class ToolButtonTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        DataDir::set(KUVO_DATA_DIR);
    }
};

UIEventKey key(int code, int modifiers)
{
    UIEventKey e;
    e.key = code;
    e.modifiers = modifiers;
    return e;
}

} // namespace

TEST_F(ToolButtonTest, ToggleFlipsBeforeTheHandlerReadsIt)
{
    PlayControls controls;
    auto* play = make<ToolButton>(root(), "data/core/editor/gui/time_play.png");
    play->sigClick = bind(&PlayControls::cb_play, &controls);
    play->setCheckEnable(true);
    EXPECT_FALSE(play->isChecked());
    EXPECT_TRUE(play->click());
    EXPECT_TRUE(play->isChecked());
    EXPECT_TRUE(play->click());
    EXPECT_FALSE(play->isChecked());
    EXPECT_EQ(controls.seen, (std::vector<bool>{true, false}));
    destroy(play);
}

TEST_F(ToolButtonTest, PushButtonsAreNeverChecked)
{
    PlayControls controls;
    auto* begin = make<ToolButton>(root(), "data/core/editor/gui/time_prev.png");
    begin->sigClick = bind(&PlayControls::cb_play, &controls);
    begin->setChecked(true);
    EXPECT_FALSE(begin->isChecked());
    begin->click();
    EXPECT_EQ(controls.seen, (std::vector<bool>{false}));

    begin->setCheckEnable(true);
    begin->setChecked(true);
    EXPECT_TRUE(begin->isChecked());
    // Turning the toggle back into a push button drops its check.
    begin->setCheckEnable(false);
    EXPECT_FALSE(begin->isChecked());
    destroy(begin);
}

TEST_F(ToolButtonTest, SetCheckedDoesNotRunTheHandler)
{
    PlayControls controls;
    auto* loop = make<ToolButton>(root(), "data/core/editor/gui/time_loop.png");
    loop->sigClick = bind(&PlayControls::cb_play, &controls);
    loop->setCheckEnable(true);
    loop->setChecked(true);
    EXPECT_TRUE(loop->isChecked());
    EXPECT_TRUE(controls.seen.empty());
    destroy(loop);
}

TEST_F(ToolButtonTest, ShortcutRecordMatchesItsKeyInEitherCase)
{
    auto* make_key = make<ToolButton>(root(), "data/core/editor/gui/key.png");
    EXPECT_FALSE(make_key->getShortcut().isSet());
    make_key->setShortcut('k', true, false, false);
    const ToolShortcut& s = make_key->getShortcut();
    EXPECT_EQ(s.key, 'k');
    EXPECT_TRUE(s.ctrl);
    EXPECT_FALSE(s.shift);
    EXPECT_FALSE(s.alt);

    UIEventKey ctrlK = key('K', UI_MOD_CTRL);
    UIEventKey plainK = key('K', 0);
    UIEventKey ctrlShiftK = key('K', UI_MOD_CTRL | UI_MOD_SHIFT);
    UIEventKey ctrlS = key('S', UI_MOD_CTRL);
    EXPECT_TRUE(make_key->matchesShortcut(&ctrlK));
    EXPECT_FALSE(make_key->matchesShortcut(&plainK));
    EXPECT_FALSE(make_key->matchesShortcut(&ctrlShiftK));
    EXPECT_FALSE(make_key->matchesShortcut(&ctrlS));
    EXPECT_EQ(make_key->getTooltip(), "Make a key at the current time (Ctrl+K)");

    make_key->setShortcut(0, false, false, false);
    EXPECT_FALSE(make_key->matchesShortcut(&ctrlK));
    EXPECT_EQ(make_key->getTooltip(), "Make a key at the current time");
    destroy(make_key);
}

TEST_F(ToolButtonTest, IconButtonsTakeTheirTooltipFromTheTranslations)
{
    auto* remove = make<ToolButton>(root(), "data/core/editor/gui/key_remove.png");
    EXPECT_EQ(remove->getIcon(), "data/core/editor/gui/key_remove.png");
    EXPECT_EQ(remove->getTip(), "Delete the selected keys");
    remove->setTip("Remove");
    EXPECT_EQ(remove->getTooltip(), "Remove");
    destroy(remove);
}

TEST_F(ToolButtonTest, MissingIconIsReportedByPath)
{
    auto* button = make<ToolButton>(root(), "data/core/editor/gui/no_such_icon.png");
    expectLogged("ToolButton::setIcon:cannot read icon");
    EXPECT_EQ(button->getIcon(), "data/core/editor/gui/no_such_icon.png");
    EXPECT_EQ(button->getTip(), "no_such_icon");
    EXPECT_FALSE(button->setIcon("data/core/editor/gui/also_missing.png"));
    expectLogged("also_missing.png");
    EXPECT_TRUE(button->setIcon("data/core/editor/gui/key.png"));
    destroy(button);
}

TEST_F(ToolButtonTest, DisabledButtonIgnoresClicks)
{
    PlayControls controls;
    auto* play = make<ToolButton>(root(), "data/core/editor/gui/time_play.png");
    play->sigClick = bind(&PlayControls::cb_play, &controls);
    play->setCheckEnable(true);
    play->setEnabled(false);
    EXPECT_FALSE(play->click());
    EXPECT_FALSE(play->isChecked());
    EXPECT_TRUE(controls.seen.empty());
    play->setEnabled(true);
    EXPECT_TRUE(play->click());
    EXPECT_EQ(controls.seen, (std::vector<bool>{true}));
    destroy(play);
}

TEST_F(ToolButtonTest, TextButtonShowsItsText)
{
    auto* save = make<ToolButton>(root(), "", "Save");
    EXPECT_TRUE(save->getIcon().empty());
    EXPECT_EQ(save->getText(), "Save");
    save->setShortcut('S', true, false, false);
    EXPECT_EQ(save->getTooltip(), "Ctrl+S");
    destroy(save);
}
