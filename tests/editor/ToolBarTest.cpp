#include "editor/ToolBar.h"

#include "editor/DataDir.h"
#include "ui/UIAutomation.h"
#include "ui/UIFixture.h"
#include "ui/UIWindow.h"

#include <string>
#include <vector>

namespace {

// The commands of a small toolbar, recording what ran.
struct Commands {
    void cb_new_track(const UIEventMouse*, UIElement*) { ran.push_back("new_track"); }
    void cb_del_track(const UIEventMouse*, UIElement*) { ran.push_back("del_track"); }
    void cb_play(const UIEventMouse*, UIElement* sender)
    {
        ran.push_back(static_cast<ToolButton*>(sender)->isChecked() ? "play on" : "play off");
    }
    std::vector<std::string> ran;
};

class ToolBarTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        DataDir::set(KUVO_DATA_DIR);
    }

    // A window holding a toolbar with new, spacer, delete and a play toggle.
    ToolBar* makeBar()
    {
        m_window = make<UIWindow>(root(), "Tools", 240, 80);
        auto* bar = make<ToolBar>(root(), 16);
        m_window->addChild(bar, UI_EXPAND_ACROSS, -1);
        bar->addButton("data/core/editor/gui/new_track.png", bind(&Commands::cb_new_track, &commands));
        bar->addSpacer();
        bar->addButton("data/core/editor/gui/del_track.png", bind(&Commands::cb_del_track, &commands));
        bar->addButton("data/core/editor/gui/time_play.png", bind(&Commands::cb_play, &commands))->setCheckEnable(true);
        return bar;
    }

    void TearDown() override
    {
        destroy(m_window);
        UIFixture::TearDown();
    }

    Commands commands;
    UIWindow* m_window = nullptr;
};

} // namespace

TEST_F(ToolBarTest, ButtonsKeepTheirOrderAndSpacersAreNotButtons)
{
    ToolBar* bar = makeBar();
    EXPECT_EQ(bar->getNumButtons(), 3);
    EXPECT_EQ(bar->getButton(0)->getIcon(), "data/core/editor/gui/new_track.png");
    EXPECT_EQ(bar->getButton(1)->getIcon(), "data/core/editor/gui/del_track.png");
    EXPECT_EQ(bar->getButton(2)->getIcon(), "data/core/editor/gui/time_play.png");
    EXPECT_EQ(bar->getButton(3), nullptr);
    EXPECT_EQ(bar->getButton(-1), nullptr);
    EXPECT_EQ(bar->getFontSize(), 16);
}

TEST_F(ToolBarTest, ClickingAButtonRunsItsCallback)
{
    ToolBar* bar = makeBar();
    bar->getButton(1)->click();
    bar->getButton(0)->click();
    bar->getButton(2)->click();
    bar->getButton(2)->click();
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"del_track", "new_track", "play on", "play off"}));
}

TEST_F(ToolBarTest, PointerClickOnTheWindowReachesTheButton)
{
    ToolBar* bar = makeBar();
    m_window->show();
    settle();
    int x = 0;
    int y = 0;
    root()->getAutomation()->elementPoint(bar->getButton(2), 4, 4, x, y);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    settle();
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"play on"}));
    EXPECT_TRUE(bar->getButton(2)->isChecked());
}

TEST_F(ToolBarTest, StateSetWithoutAClickIsWhatTheNextClickFlips)
{
    ToolBar* bar = makeBar();
    m_window->show();
    settle();
    ToolButton* play = bar->getButton(2);
    play->setChecked(true); // as a loaded document would
    bar->updateButtons();
    int x = 0;
    int y = 0;
    root()->getAutomation()->elementPoint(play, 4, 4, x, y);
    ASSERT_TRUE(root()->getAutomation()->click(x, y));
    settle();
    EXPECT_FALSE(play->isChecked());
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"play off"}));
}

TEST_F(ToolBarTest, ShortcutKeyClicksItsButton)
{
    ToolBar* bar = makeBar();
    bar->getButton(0)->setShortcut('N', true, false, false);
    UIEventKey ctrlN;
    ctrlN.key = 'N';
    ctrlN.modifiers = UI_MOD_CTRL;
    UIEventKey plainN;
    plainN.key = 'N';
    EXPECT_FALSE(bar->onKeyPress(&plainN));
    EXPECT_TRUE(bar->onKeyPress(&ctrlN));
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"new_track"}));

    // Through the window's element tree, as a real key press travels.
    m_window->show();
    settle();
    ASSERT_TRUE(root()->getAutomation()->keyPress('N', UI_MOD_CTRL));
    settle();
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"new_track", "new_track"}));

    // A hidden button's shortcut does nothing.
    bar->getButton(0)->setHidden(true);
    EXPECT_FALSE(bar->onKeyPress(&ctrlN));
    EXPECT_EQ(commands.ran.size(), 2u);
}

TEST_F(ToolBarTest, FontSizeSizesEveryButton)
{
    ToolBar* bar = makeBar();
    bar->setFontSize(24);
    EXPECT_EQ(bar->getFontSize(), 24);
    for (int i = 0; i < bar->getNumButtons(); ++i)
        EXPECT_EQ(bar->getButton(i)->getIconSize(), 24);
    ToolButton* added = bar->addTextButton("Load", bind(&Commands::cb_new_track, &commands));
    EXPECT_EQ(added->getIconSize(), 24);
    EXPECT_EQ(added->getText(), "Load");
    added->click();
    EXPECT_EQ(commands.ran, (std::vector<std::string>{"new_track"}));
}
