#include <functional>
#include <string>

#include "UIFixture.h"
#include "kit/jAllocator.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIDialog.h"
#include "ui/UITreeBox.h"
#include "ui/UIWidget.h"

namespace {

// A picker as the editor's panels build them: a tree of dotted names; activating a leaf or
// pressing OK on one chooses it, Cancel closes without a choice.
class PickPanel : public UIDialog {
public:
    PickPanel(UIRoot* root, bool* ok, std::string* result) : UIDialog(root), m_ok(ok), m_result(result)
    {
        setPreferredSize(256, 384);
        m_tree = jNew<UITreeBox>("tests/ui", __LINE__, "PickPanel", root);
        addChild(m_tree, UI_EXPAND_BOTH);
        int node = m_tree->addItem("Node");
        m_tree->addItem("position", node);
        m_tree->addItem("rotation", node);
        m_tree->addItem("Light");
        m_tree->sigMouse = bind(&PickPanel::cb_tree_mouse, this);
        getOkButton()->sigClick = bind(&PickPanel::cb_ok, this);
        getCancelButton()->sigClick = bind(&PickPanel::cb_cancel, this);
    }

    // Called when a choice is made, before the dialog closes.
    Function<void()> onChosen;

private:
    void take(int item)
    {
        *m_ok = true;
        std::string name = m_tree->getItemText(item).c_str();
        for (int up = m_tree->getItemParent(item); up != -1; up = m_tree->getItemParent(up))
            name = std::string(m_tree->getItemText(up).c_str()) + "." + name;
        *m_result = name;
        onChosen();
    }
    void cb_tree_mouse(const UIEventMouse*, UIElement*)
    {
        int item = m_tree->getCurrentItem();
        if (item == -1 || m_tree->getItemNumChilds(item) > 0)
            return;
        take(item);
        closeDialog();
    }
    void cb_ok(const UIEventMouse*, UIElement*)
    {
        int item = m_tree->getCurrentItem();
        if (item != -1 && m_tree->getItemNumChilds(item) == 0)
            take(item);
        closeDialog();
    }
    void cb_cancel(const UIEventMouse*, UIElement*) { closeDialog(); }

    bool* m_ok;
    std::string* m_result;
    UITreeBox* m_tree;
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
        widget->setIME(false);
        widget->setUI(panel, "select_data_type");
        widget->setMinSize(panel->getPreferredWidth(), panel->getPreferredHeight());
        widget->setForceClose(true);
        widget->setEscClose(true);
        widget->center();
        widget->modality();
        EXPECT_FALSE(widget->isModal());
        EXPECT_FALSE(widget->isShown());
        widget->close();
        destroy(widget);
        destroy(panel);
        return ok;
    }
    UIAutomation* hook() { return root()->getAutomation(); }
};

TEST_F(UIWidgetTest, AQueuedTreeItemAnswersTheModalPicker)
{
    hook()->answerTreeItem("Node.position");
    std::string result;
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Node.position");
    EXPECT_EQ(hook()->pendingAnswers(), 0);
}

TEST_F(UIWidgetTest, ABranchKeepsThePickerOpenForTheNextAnswer)
{
    hook()->answerTreeItem("Node");
    hook()->answerTreeItem("Light");
    hook()->answerTreeItem("Node.rotation"); // for a later dialog
    std::string result;
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Light");
    EXPECT_EQ(hook()->pendingAnswers(), 1);
    EXPECT_TRUE(pick(result));
    EXPECT_EQ(result, "Node.rotation");
}

TEST_F(UIWidgetTest, OkOnABranchAndCancelCloseWithoutAChoice)
{
    hook()->answerTreeItem("Node");
    hook()->answerOk();
    std::string result;
    EXPECT_FALSE(pick(result));
    hook()->answerCancel();
    EXPECT_FALSE(pick(result));
    EXPECT_EQ(result, "");
}

TEST_F(UIWidgetTest, WithoutAnAnswerAHeadlessModalRunClosesAsCancelled)
{
    ASSERT_TRUE(root()->isHeadless());
    std::string result;
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no answer queued for \"select_data_type\", closed as cancelled");
}

TEST_F(UIWidgetTest, AnAnswerThatDoesNotFitIsReportedAndCloses)
{
    hook()->answerTreeItem("Node.scale");
    std::string result;
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:no tree item \"Node.scale\" in \"select_data_type\"");
    hook()->answerFile("/tmp/a.anim");
    EXPECT_FALSE(pick(result));
    expectLogged("UIWidget::modality:a file answer does not fit \"select_data_type\"");
}

namespace {

// Opens a second picker from inside the first one's choice, as the node picker leads to the
// internal-node picker.
struct Chain {
    void open_second()
    {
        second_ok = fixture_pick(second);
    }
    std::function<bool(std::string&)> fixture_pick;
    std::string second;
    bool second_ok = false;
};

} // namespace

TEST_F(UIWidgetTest, NestedModalRunsTakeTheAnswersInOrder)
{
    hook()->answerTreeItem("Light");
    hook()->answerTreeItem("Node.position");
    bool ok = false;
    std::string first;
    Chain chain;
    chain.fixture_pick = [this](std::string& r) { return pick(r); };
    auto* widget = make<UIWidget>(root(), Widget::MakeCenter(300, 300));
    auto* panel = make<PickPanel>(root(), &ok, &first);
    panel->onChosen = [&chain]() { chain.open_second(); };
    widget->setUI(panel, "first");
    widget->modality();
    EXPECT_TRUE(ok);
    EXPECT_EQ(first, "Light");
    EXPECT_TRUE(chain.second_ok);
    EXPECT_EQ(chain.second, "Node.position");
    destroy(widget);
    destroy(panel);
}

TEST_F(UIWidgetTest, EscapeClosesAModelessWidgetByItsRules)
{
    bool ok = false;
    std::string result;
    auto* widget = make<UIWidget>(root(), Widget::MakeCenter(300, 300));
    auto* panel = make<PickPanel>(root(), &ok, &result);
    widget->setUI(panel, "settings");
    EXPECT_EQ(widget->getTitle(), "settings");
    EXPECT_EQ(widget->getWidth(), 256); // the panel's preferred size
    EXPECT_EQ(widget->getHeight(), 384);

    widget->setForceClose(false);
    widget->setEscClose(false);
    widget->show();
    settle();
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

TEST_F(UIWidgetTest, SetUIRefusesNull)
{
    auto* widget = make<UIWidget>(root(), Widget::MakeCenter(100, 100));
    widget->setUI(nullptr, "x");
    expectLogged("UIWidget::setUI:panel");
    EXPECT_EQ(widget->getUI(), nullptr);
    destroy(widget);
}
