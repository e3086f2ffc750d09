#include "UIFixture.h"
#include "kit/jAllocator.h"
#include "ui/DialogColor.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIDialog.h"
#include "ui/UIEditLine.h"
#include "ui/UIHLayout.h"
#include "ui/UITreeBox.h"
#include "ui/UIWidget.h"

#include <string>

namespace {

// A picker as the editor's panels build them: a search box narrowing a tree of dotted names;
// activating a leaf, or pressing the extra button shown while a branch is current, chooses.
class PickPanel : public UIDialog {
public:
    PickPanel(UIRoot* root, bool* ok, std::string* result) : UIDialog(root), m_ok(ok), m_result(result)
    {
        setPreferredSize(256, 384);
        m_search = jNew<UIEditLine>("tests/ui", __LINE__, "PickPanel", root);
        addChild(m_search, UI_EXPAND_ACROSS);
        m_tree = jNew<UITreeBox>("tests/ui", __LINE__, "PickPanel", root);
        addChild(m_tree, UI_EXPAND_BOTH);
        m_internal = jNew<UIButton>("tests/ui", __LINE__, "PickPanel", root, "Internal node");
        m_internal->setHidden(true);
        getButtonRow()->addChild(m_internal);
        fill();
        m_search->sigChanged = [this](const UIEventChanged*, UIElement*) { fill(); };
        m_tree->sigChanged = [this](const UIEventChanged*, UIElement*) { m_internal->setHidden(!on_branch()); };
        m_tree->sigMouse = [this](const UIEventMouse* e, UIElement* sender) {
            if (!on_branch())
                cb_choose(e, sender);
        };
        m_internal->sigClick = bind(&PickPanel::cb_choose, this);
        getOkButton()->sigClick = bind(&PickPanel::cb_close, this);
        getCancelButton()->sigClick = bind(&PickPanel::cb_close, this);
    }

private:
    // Lists the node and the lights whose names hold the search text.
    void fill()
    {
        m_tree->clear();
        int node = m_tree->addItem("Node");
        m_tree->addItem("position", node);
        m_tree->addItem("rotation", node);
        for (std::string name : {"Light", "Lamp.001"}) {
            if (name.find(m_search->getText().c_str()) != std::string::npos)
                m_tree->addItem(name.c_str());
        }
    }
    bool on_branch() const
    {
        int item = m_tree->getCurrentItem();
        return item >= 0 && m_tree->getItemNumChilds(item) > 0;
    }
    void cb_choose(const UIEventMouse*, UIElement*)
    {
        int item = m_tree->getCurrentItem();
        *m_ok = true;
        *m_result = m_tree->getItemText(item).c_str();
        for (int up = m_tree->getItemParent(item); up != -1; up = m_tree->getItemParent(up))
            *m_result = std::string(m_tree->getItemText(up).c_str()) + "." + *m_result;
        closeDialog();
    }
    void cb_close(const UIEventMouse*, UIElement*) { closeDialog(); }

    bool* m_ok;
    std::string* m_result;
    UIEditLine* m_search;
    UITreeBox* m_tree;
    UIButton* m_internal;
};

} // namespace

class UIWidgetTest : public UIFixture {
protected:
    // Runs a picker modally as the editor does and returns whether a name was chosen.
    bool pick(std::string& result)
    {
        bool ok = false;
        auto* widget = make<UIWidget>(root(), Widget::MakeCenter(800, 600));
        auto* panel = make<PickPanel>(root(), &ok, &result);
        widget->setUI(panel, "select_data_type");
        widget->setForceClose(true);
        widget->setEscClose(true);
        widget->modality();
        EXPECT_FALSE(widget->isShown());
        destroy(widget);
        destroy(panel);
        return ok;
    }
    UIAutomation* hook() { return root()->getAutomation(); }
};

// Scripts answer pickers by dotted names: a branch only unfolds, so the picker stays open for the
// next answer, and answers left over wait for the next dialog; OK on a branch and Cancel choose
// nothing.
TEST_F(UIWidgetTest, QueuedAnswersDriveTheModalPickerInOrder)
{
    hook()->answerTreeItem("Node");
    hook()->answerTreeItem("Node.position");
    hook()->answerTreeItem("Lamp.001"); // for the next picker; the name holds a dot
    std::string result;
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Node.position");
    EXPECT_EQ(hook()->pendingAnswers(), 1);
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Lamp.001");
    result.clear();
    hook()->answerTreeItem("Node");
    hook()->answerOk();
    EXPECT_FALSE(pick(result));
    hook()->answerCancel();
    EXPECT_FALSE(pick(result));
    EXPECT_EQ(result, "");
}

// A user clicks a branch once to show the extra button and presses it, or narrows the picker by
// typing; a picture of the open picker is taken on the way.
TEST_F(UIWidgetTest, ScriptsSelectPressSearchAndPictureAnOpenPicker)
{
    TempDir dir;
    std::string result;
    hook()->answerScreenshot(dir.file("picker.png").c_str());
    hook()->answerSelectItem("Node");
    hook()->answerButton("Internal node");
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Node");
    vec4 corner;
    EXPECT_TRUE(hook()->readPixel(dir.file("picker.png").c_str(), 255, 383, corner)); // the picker's size
    hook()->answerFind("Lamp");
    hook()->answerTreeItem("Light"); // filtered out
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no tree item \"Light\" in \"select_data_type\"");
}

// Nothing may block a headless run: a picker without an answer, or with one that does not fit
// it, closes as cancelled and says why.
TEST_F(UIWidgetTest, AMissingOrUnfitAnswerClosesThePickerAndSaysSo)
{
    std::string result;
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no answer queued for \"select_data_type\", closed as cancelled");
    hook()->answerTreeItem("Node.scale");
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no tree item \"Node.scale\" in \"select_data_type\"");
    hook()->answerFile("/tmp/a.anim");
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:a file answer does not fit \"select_data_type\"");
    hook()->answerButton("Internal node"); // hidden until a branch is current
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no button \"Internal node\" shown in \"select_data_type\"");
    hook()->answerScreenshot("/nonexistent/picker.png");
    EXPECT_FALSE(pick(result));
    expectLogged("cannot write screenshot \"/nonexistent/picker.png\"");
}

// The settings window opens centred at its panel's size; Escape closes it only when allowed, and a
// forced close hands the panel back.
TEST_F(UIWidgetTest, ASettingsWindowIsCentredAndEscapeClosesItByItsRules)
{
    bool ok = false;
    std::string result;
    auto* widget = make<UIWidget>(root(), Widget::MakeCenter(300, 300));
    widget->setUI(nullptr, "x");
    expectLogged("UIWidget::setUI:panel");
    auto* panel = make<PickPanel>(root(), &ok, &result);
    panel->closeDialog(); // not shown in a widget: nothing to close
    widget->setUI(panel, "settings");
    EXPECT_EQ(widget->getWidth(), 256); // the panel's preferred size
    EXPECT_EQ(widget->getHeight(), 384);
    widget->setIME(false);
    widget->center();
    widget->setForceClose(false);
    widget->setEscClose(false);
    widget->show();
    settle();
    UIRect centred = Widget::MakeCenter(256, 384);
    int x = 0, y = 0;
    widget->localToScreen(x, y);
    EXPECT_NEAR(x, centred.x, 2);

    panel->getCancelButton()->setFocus();
    ASSERT_TRUE(hook()->keyPress(UI_KEY_ESCAPE));
    EXPECT_TRUE(widget->isShown());
    widget->setEscClose(true);
    ASSERT_TRUE(hook()->keyPress(UI_KEY_ESCAPE));
    EXPECT_FALSE(widget->isShown());
    EXPECT_EQ(widget->getUI(), panel); // kept for the next show

    widget->setForceClose(true);
    widget->show();
    settle();
    panel->getCancelButton()->setFocus();
    ASSERT_TRUE(hook()->keyPress(UI_KEY_ESCAPE));
    EXPECT_FALSE(widget->isShown());
    EXPECT_EQ(widget->getUI(), nullptr); // released: the panel left it
    EXPECT_EQ(panel->getParent(), nullptr);
    destroy(widget);
    destroy(panel);
}

// A colour key's dialog: a queued colour reaches the key, Cancel or a wrong answer leave it, and
// without an answer a headless run closes the dialog as cancelled.
TEST_F(UIWidgetTest, AColourDialogTakesOnlyAQueuedColour)
{
    int changes = 0;
    auto* dialog = make<DialogColor>(root());
    dialog->setColor(vec4(0.2f, 0.3f, 0.4f, 1.0f));
    dialog->sigChanged = [&changes](const UIEventChanged*, UIElement*) { ++changes; };
    EXPECT_FALSE(dialog->modality());
    expectLogged("DialogColor::modality:no answer queued for \"Color\", closed as cancelled");
    hook()->answerCancel();
    EXPECT_FALSE(dialog->modality());
    hook()->answerYes();
    EXPECT_FALSE(dialog->modality());
    expectLogged("DialogColor::modality:the answer queued for \"Color\" is not a colour");
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(dialog->getColor(), vec4(0.2f, 0.3f, 0.4f, 1.0f));
    hook()->answerColor(vec4(1.0f, 0.5f, 0.0f, 0.25f));
    EXPECT_TRUE(dialog->modality());
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(dialog->getColor(), vec4(1.0f, 0.5f, 0.0f, 0.25f));
    destroy(dialog);
}

using UITreeBoxTest = UIFixture;

// Pickers are answered by dotted paths, so a moved or renamed item must be found where it is now,
// keeping its tag, its data and its folding (which Qt forgets on a move); an item never moves
// below itself, and a bad id is reported.
TEST_F(UITreeBoxTest, MovedItemsAreFoundWhereTheyAreAndKeepWhatTheyCarry)
{
    auto* tree = make<UITreeBox>(root());
    int a = tree->addItem("a");
    int b = tree->addItem("b", a);
    int c = tree->addItem("c");
    tree->setItemTag(c, 7);
    tree->setItemData(c, tree);
    tree->setItemHidden(b, true);
    ASSERT_TRUE(tree->setItemParent(c, b));
    EXPECT_EQ(tree->findItem("a.b.c"), c);
    EXPECT_EQ(tree->getItemChild(b, 0), c);
    EXPECT_TRUE(tree->isItemShown(b));
    EXPECT_FALSE(tree->isItemShown(c));
    EXPECT_FALSE(tree->setItemParent(a, c));
    expectLogged("UITreeBox::setItemParent");
    ASSERT_TRUE(tree->setItemParent(b, -1));
    tree->setItemText(c, "d");
    EXPECT_EQ(tree->findItem("b.d"), c);
    EXPECT_TRUE(tree->isItemHidden(b));
    EXPECT_FALSE(tree->isItemShown(c));
    EXPECT_EQ(tree->getItemTag(c), 7);
    EXPECT_EQ(tree->getItemData(c), tree);
    EXPECT_EQ(tree->addItem("x", 9), -1);
    expectLogged("UITreeBox::addItem:item");
    EXPECT_EQ(tree->getItemText(9), "");
    expectLogged("UITreeBox::getItemText:item");
    EXPECT_FALSE(tree->setItemTag(9, 1));
    expectLogged("UITreeBox::setItemTag:item");
    tree->setCurrentItem(c);
    EXPECT_EQ(tree->getCurrentItem(), c);
    tree->clear();
    EXPECT_EQ(tree->getNumItems(), 0);
    EXPECT_EQ(tree->getCurrentItem(), -1);
    destroy(tree);
}
