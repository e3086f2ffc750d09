#include "editor/ButtonLookup.h"

#include "editor/DataDir.h"
#include "editor/Locale.h"
#include "editor/ToolBar.h"
#include "ui/UIButton.h"
#include "ui/UIFixture.h"
#include "ui/UIVLayout.h"
#include "ui/UIWindow.h"

class ButtonLookupTest : public UIFixture {
protected:
    void SetUp() override
    {
        UIFixture::SetUp();
        DataDir::set(KUVO_DATA_DIR);
        m_window = make<UIWindow>(root(), "Lookup", 240, 120);
        auto* column = make<UIVLayout>(root());
        m_window->addChild(column, UI_EXPAND_BOTH, -1);
        auto* bar = make<ToolBar>(root(), 16);
        column->addChild(bar, UI_EXPAND_ACROSS, -1);
        play = bar->addButton("data/core/editor/gui/time_play.png", UISlot<UIEventMouse>());
        save = bar->addTextButton(tr("save"), UISlot<UIEventMouse>());
        clear = make<UIButton>(root(), tr("clear"));
        column->addChild(clear, UI_EXPAND_NONE, -1);
    }
    void TearDown() override
    {
        destroy(m_window);
        UIFixture::TearDown();
    }

    ToolButton* play = nullptr;
    ToolButton* save = nullptr;
    UIButton* clear = nullptr;

private:
    UIWindow* m_window = nullptr;
};

TEST_F(ButtonLookupTest, FindsIconButtonsByStemAndTextButtonsByTranslationKey)
{
    UIElement* window = play->getParent()->getParent()->getParent();
    EXPECT_EQ(ButtonLookup::find(window, "time_play"), play);
    EXPECT_EQ(ButtonLookup::find(window, "save"), save);
    EXPECT_EQ(ButtonLookup::find(window, "clear"), clear);
}

TEST_F(ButtonLookupTest, UnknownNamesAndTranslatedTextsFindNothing)
{
    UIElement* window = play->getParent()->getParent()->getParent();
    EXPECT_EQ(ButtonLookup::find(window, "time_play.png"), nullptr);
    EXPECT_EQ(ButtonLookup::find(window, "load"), nullptr);
    EXPECT_EQ(ButtonLookup::find(nullptr, "save"), nullptr);
}
