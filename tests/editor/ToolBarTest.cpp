#include "editor/ToolBar.h"

#include "editor/ButtonLookup.h"
#include "editor/DataDir.h"
#include "editor/Locale.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIFixture.h"
#include "ui/UIWindow.h"

#include <string>
#include <vector>

namespace {

// The track editor's toolbar in a shown window: new, a spacer, delete, a play toggle and a text
// button. Each command records its name, a toggle's with the state its handler reads.
class ToolBarTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        DataDir::set(KUVO_DATA_DIR);
        window = make<UIWindow>(root(), "Tools", 240, 80);
        bar = make<ToolBar>(root(), 16);
        window->addChild(bar, UI_EXPAND_ACROSS, -1);
        add("new_track");
        bar->addSpacer();
        add("del_track");
        play = add("time_play");
        play->setCheckEnable(true);
        save = bar->addTextButton(tr("save"), record("save"));
        window->show();
        settle();
    }
    void TearDown() override
    {
        destroy(window);
        UIFixture::TearDown();
    }
    ToolButton* add(const std::string& name)
    {
        return bar->addButton(("data/core/editor/gui/" + name + ".png").c_str(), record(name));
    }
    UISlot<UIEventMouse> record(const std::string& name)
    {
        return [this, name](const UIEventMouse*, UIElement* sender) {
            auto* button = static_cast<ToolButton*>(sender);
            ran.push_back(button->isCheckEnable() ? name + (button->isChecked() ? " on" : " off") : name);
        };
    }
    // Clicks a button with the pointer, through the window.
    void pointerClick(ToolButton* button)
    {
        int x = 0, y = 0;
        root()->getAutomation()->elementPoint(button, 4, 4, x, y);
        ASSERT_TRUE(root()->getAutomation()->click(x, y));
    }

    UIWindow* window = nullptr;
    ToolBar* bar = nullptr;
    ToolButton* play = nullptr;
    ToolButton* save = nullptr;
    std::vector<std::string> ran;
};

} // namespace

// Buttons are found by their place (spacers are no buttons); a toggle flips before its command
// reads it, and a state set by a loaded document is what the next click flips. A push button is
// never checked, and a toggle made a push button again drops its check.
TEST_F(ToolBarTest, ClicksRunTheCommandsAndTogglesFlipFirst)
{
    EXPECT_EQ(bar->getNumButtons(), 4);
    EXPECT_EQ(bar->getButton(4), nullptr);
    EXPECT_EQ(bar->getButton(-1), nullptr);
    pointerClick(play);
    EXPECT_TRUE(play->click());
    bar->getButton(1)->setChecked(true);
    bar->getButton(1)->click();
    play->setChecked(true);
    bar->updateButtons();
    pointerClick(play);
    EXPECT_EQ(ran, (std::vector<std::string>{"time_play on", "time_play off", "del_track", "time_play off"}));
    EXPECT_FALSE(bar->getButton(1)->isChecked());
    play->setChecked(true);
    play->setCheckEnable(false);
    EXPECT_FALSE(play->isChecked());
}

// Scripts and commands name a toolbar button by its icon's stem and a text button by the
// translation key of its text, never by the file name or the translated text.
TEST_F(ToolBarTest, ButtonLookupFindsButtonsByStemOrTranslationKey)
{
    auto* clear = make<UIButton>(root(), tr("clear"));
    window->addChild(clear);
    EXPECT_EQ(ButtonLookup::find(window, "time_play"), play);
    EXPECT_EQ(ButtonLookup::find(window, "save"), save);
    EXPECT_EQ(ButtonLookup::find(window, "clear"), clear);
    EXPECT_EQ(ButtonLookup::find(window, "time_play.png"), nullptr);
    EXPECT_EQ(ButtonLookup::find(window, "load"), nullptr);
    EXPECT_EQ(ButtonLookup::find(nullptr, "save"), nullptr);
}

// Ctrl+N reaches the new-track button through the window's tree, in either letter case and only
// with the modifiers it was given; a disabled or hidden button ignores clicks and its shortcut.
TEST_F(ToolBarTest, ShortcutKeysClickTheirButtonUnlessDisabledOrHidden)
{
    ToolButton* add_track = bar->getButton(0);
    add_track->setShortcut('n', true, false, false);
    UIEventKey press;
    press.key = 'N';
    EXPECT_FALSE(bar->onKeyPress(&press));
    press.modifiers = UI_MOD_CTRL | UI_MOD_SHIFT;
    EXPECT_FALSE(bar->onKeyPress(&press));
    ASSERT_TRUE(root()->getAutomation()->keyPress('N', UI_MOD_CTRL));
    EXPECT_EQ(ran, std::vector<std::string>{"new_track"});
    press.modifiers = UI_MOD_CTRL;
    add_track->setEnabled(false);
    EXPECT_FALSE(add_track->click());
    EXPECT_FALSE(bar->onKeyPress(&press));
    add_track->setEnabled(true);
    add_track->setHidden(true);
    EXPECT_FALSE(bar->onKeyPress(&press));
    EXPECT_EQ(ran.size(), 1u);
}

// Tooltips are the translated tip of the icon followed by the shortcut; a text button's is its
// shortcut alone. A missing icon is reported by its path and the button shows its name instead.
// The font size sizes every button, later ones too.
TEST_F(ToolBarTest, TooltipsNameTheCommandAndItsShortcut)
{
    ToolButton* add_track = bar->getButton(0);
    EXPECT_EQ(add_track->getTooltip(), "Add a parameter to the track");
    add_track->setShortcut('N', true, false, false);
    EXPECT_EQ(add_track->getTooltip(), "Add a parameter to the track (Ctrl+N)");
    save->setShortcut('S', true, true, true);
    EXPECT_EQ(save->getTooltip(), "Ctrl+Shift+Alt+S");
    ToolButton* missing = add("no_such_icon");
    expectLogged("ToolButton::setIcon:cannot read icon \"" KUVO_DATA_DIR "/core/editor/gui/no_such_icon.png\"");
    EXPECT_EQ(missing->getTooltip(), "no_such_icon");
    EXPECT_TRUE(missing->setIcon("data/core/editor/gui/key.png"));
    bar->setFontSize(24);
    bar->addTextButton("Load", record("load"));
    ASSERT_EQ(bar->getNumButtons(), 6);
    for (int i = 0; i < bar->getNumButtons(); ++i)
        EXPECT_EQ(bar->getButton(i)->getIconSize(), 24);
}
