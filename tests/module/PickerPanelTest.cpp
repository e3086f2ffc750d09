#include <string>
#include <vector>

#include "LinePanelFixture.h"
#include "TrackEditorMsg.h"
#include "data/FKeyString.h"
#include "data/FParameterStringMaterial.h"
#include "editor/Locale.h"
#include "scene/Engine.h"
#include "scene/World.h"
#include "ui/MaterialParamSelectPanel.h"
#include "ui/MaterialSelectPanel.h"
#include "ui/PickerDialog.h"
#include "ui/TrackNodeSelectPanel.h"
#include "ui/TrackSubNodeSelectPanel.h"
#include "ui/TrackTypeSelectPanel.h"
#include "ui/UIAutomation.h"
#include "ui/UIButton.h"
#include "ui/UIEditLine.h"
#include "ui/UIHLayout.h"
#include "ui/UITreeBox.h"
#include "ui/UIWidget.h"

namespace {

// The items under parent (-1: the top level) as "text(child child) text", in order.
std::string shape(const UITreeBox* tree, int parent = -1)
{
    std::string out;
    for (int item = 0; item < tree->getNumItems(); ++item) {
        if (tree->getItemParent(item) != parent)
            continue;
        if (!out.empty())
            out += ' ';
        out += tree->getItemText(item).c_str();
        if (tree->getItemNumChilds(item) > 0) {
            out += '(';
            out += shape(tree, item);
            out += ')';
        }
    }
    return out;
}

// Queues answers for the next modal runs: "OK", "Cancel", or the dotted path of a tree item.
void queue(UIAutomation* hook, const std::vector<std::string>& answers)
{
    for (const std::string& answer : answers) {
        if (answer == "OK")
            hook->answerOk();
        else if (answer == "Cancel")
            hook->answerCancel();
        else
            hook->answerTreeItem(answer.c_str());
    }
}

} // namespace

// Pickers driven as a user drives them: modally through queued answers, or shown in a window to
// type a search, look at the rows and click.
class PickerPanelTest : public ModuleFixture {
protected:
    void TearDown() override
    {
        closeShown();
        ModuleFixture::TearDown();
    }
    UIAutomation* hook() const { return root()->getAutomation(); }
    // Makes a picker that writes into ok, text, node and subNode from a spec: "type", "node TYPE",
    // "sub TYPE" (in the prefab Lamp), "material TYPE" or "param MATERIAL".
    PickerPanel* picker(const std::string& spec)
    {
        World* world = demoWorld();
        const std::string kind = spec.substr(0, spec.find(' '));
        const jString arg = spec.substr(spec.find(' ') + 1).c_str();
        if (kind == "type")
            return make<TrackTypeSelectPanel>(root(), &ok, &text);
        if (kind == "node")
            return make<TrackNodeSelectPanel>(root(), world, arg, &ok, &node, &subNode);
        if (kind == "sub")
            return make<TrackSubNodeSelectPanel>(root(), world->getNodeByName("Lamp"), arg, &ok, &node);
        if (kind == "material")
            return make<MaterialSelectPanel>(root(), arg, &ok, &text);
        return make<MaterialParamSelectPanel>(root(), Engine::get()->getMaterialManager()->get(arg), &ok, &text);
    }
    // Shows a picker in a window of its own and types a search into it.
    PickerPanel* show(PickerPanel* panel, const char* search = "")
    {
        closeShown();
        m_shown = panel;
        m_window = make<UIWidget>(root(), Widget::MakeCenter(800, 600));
        m_window->setUI(panel, "picker");
        m_window->show();
        settle();
        panel->getSearchBox()->setFocus();
        EXPECT_TRUE(hook()->typeText(search));
        return panel;
    }
    PickerPanel* shown() const { return m_shown; }
    // Whether text in the colour shows on the first row of the shown tree.
    bool firstRowShows(const vec4& colour)
    {
        settle();
        const std::string path = m_shots.file("tree.png");
        EXPECT_TRUE(hook()->saveScreenshot(m_shown->getTree(), path.c_str()));
        vec4 pixel;
        for (int y = 2; y < 18; y += 2) {
            for (int x = 20; x < 60; ++x) {
                if (hook()->readPixel(path.c_str(), x, y, pixel) && near(pixel, colour, 0.02f))
                    return true;
            }
        }
        return false;
    }

    bool ok = false;
    jString text = "untouched";
    int node = -1;
    bool subNode = false;

private:
    void closeShown()
    {
        destroy(m_window);
        destroy(m_shown);
        m_window = nullptr;
        m_shown = nullptr;
    }

    UIWidget* m_window = nullptr;
    PickerPanel* m_shown = nullptr;
    TempDir m_shots;
};

// Each picker lists what its type accepts, branches folded; a search keeps the names containing
// it, whatever the case, and unfolds the branches left.
TEST_F(PickerPanelTest, PickersListWhatTheTypeAcceptsAndASearchNarrowsIt)
{
    const struct {
        const char* spec;
        const char* search;
        const char* listed;
        const char* branchItem; // folded away without a search, in view with one
    } cases[] = {
        {"type", "", "Node(enabled position rotation scale world_position) Light(color intensity) Camera(fov) "
                     "Object(material mesh) Material(float vec3 color) Track(play) Render(exposure fog_color)",
         "Node.position"},
        {"type", "POS", "Node(position world_position) Render(exposure)", "Node.position"},
        {"node Light.color", "", "Sun Spot", nullptr},
        {"node Camera.fov", "", "__EDITOR_CAMERA__ MainCamera", nullptr},
        {"node Node.enabled", "", "Ground Pillar Pond Sun Spot MainCamera Pivot Lamp Lamp.001 Crate", nullptr},
        {"node Node.enabled", "LAMP", "Lamp Lamp.001", nullptr},
        {"node Node.enabled", "zzz", "", nullptr},
        {"sub Light.intensity", "", "LampBulb", nullptr},
        {"sub Node.scale", "", "LampPost LampBulb LampGlow LampAnchor", nullptr},
        {"sub Camera.fov", "", "__EDITOR_CAMERA__", nullptr},
        {"material Material.float", "", "surface(brick(brick_mossy) metal) glass(water) emissive", "surface.brick"},
        {"material Material.float", "Mossy", "brick(brick_mossy)", "brick.brick_mossy"},
        {"param glass", "", "tint ior fresnel cull_mode texture_slot", nullptr},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.spec) + " " + c.search);
        const UITreeBox* tree = show(picker(c.spec), c.search)->getTree();
        EXPECT_EQ(shape(tree), c.listed);
        if (c.branchItem) {
            EXPECT_EQ(tree->isItemShown(tree->findItem(c.branchItem)), *c.search != '\0');
        }
    }
    EXPECT_EQ(shown()->getWidth(), PickerPanel::PREFERRED_WIDTH);
    EXPECT_EQ(shown()->getHeight(), PickerPanel::PREFERRED_HEIGHT);
}

// A leaf is chosen by activating it, or by OK while it is current; a branch only unfolds (a base
// material, though, is taken by the mouse). Cancel writes nothing.
TEST_F(PickerPanelTest, AnswersChooseALeafAndCancelChoosesNothing)
{
    const struct {
        const char* spec;
        const char* current;
        std::vector<std::string> answers;
        bool chosen;
        const char* text;
        int node;
    } cases[] = {
        {"type", nullptr, {"Node.position"}, true, "Node.position", -1},
        {"type", nullptr, {"Light", "Light.intensity"}, true, "Light.intensity", -1},
        {"type", "Node", {"OK"}, false, "untouched", -1},
        {"type", "Node.rotation", {"OK"}, true, "Node.rotation", -1},
        {"node Light.color", nullptr, {"Spot"}, true, "untouched", 5},
        {"sub Light.color", "LampBulb", {"OK"}, true, "untouched", 10},
        {"material Material.float", "surface.brick", {"OK"}, false, "untouched", -1},
        {"material Material.float", "surface.brick.brick_mossy", {"OK"}, true, "brick_mossy", -1},
        {"material Material.float", nullptr, {"surface.brick"}, true, "brick", -1},
        {"param glass", nullptr, {"cull_mode"}, true, "cull_mode", -1},
        {"type", "Node.rotation", {"Cancel"}, false, "untouched", -1},
        {"node Light.color", "Sun", {"Cancel"}, false, "untouched", -1},
        {"sub Light.color", "LampBulb", {"Cancel"}, false, "untouched", -1},
        {"material Material.float", "glass.water", {"Cancel"}, false, "untouched", -1},
        {"param glass", "ior", {"Cancel"}, false, "untouched", -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.spec) + " " + c.answers.back());
        ok = false;
        text = "untouched";
        node = -1;
        PickerPanel* panel = picker(c.spec);
        if (c.current)
            panel->getTree()->setCurrentItem(panel->getTree()->findItem(c.current));
        queue(hook(), c.answers);
        runPickerDialog(root(), panel, "select_node", "PickerPanelTest");
        EXPECT_EQ(hook()->pendingAnswers(), 0);
        EXPECT_EQ(ok, c.chosen);
        EXPECT_EQ(text, c.text);
        EXPECT_EQ(node, c.node);
        EXPECT_FALSE(subNode);
    }
}

// A leaf's full name runs from the top level down; a branch has none.
TEST_F(PickerPanelTest, ATypeIsNamedFromTheTopDown)
{
    auto* panel = static_cast<TrackTypeSelectPanel*>(show(picker("type")));
    EXPECT_EQ(panel->get_full_node_type_name(panel->getTree()->findItem("Node.world_position")), "Node.world_position");
    EXPECT_EQ(panel->get_full_node_type_name(panel->getTree()->findItem("Node")), "");
    expectLogged("TrackTypeSelectPanel::get_full_node_type_name: \"Node\" is not leaf item, ignore");
}

// Prefabs show in blue and, once current, offer their internal nodes; "internal node" with nothing
// current asks for them without choosing a node.
TEST_F(PickerPanelTest, APrefabIsBlueAndOffersItsInternalNodes)
{
    const vec4 blue(0.2980392f, 0.5019608f, 0.8509804f, 1.0f);
    const struct {
        const char* search;
        bool prefab;
    } cases[] = {{"lamp.001", true}, {"sun", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.search);
        subNode = false;
        UIHLayout* row = show(picker("node Node.enabled"), c.search)->getButtonRow();
        auto* internal = static_cast<UIButton*>(row->getChild(row->getNumChilds() - 1));
        EXPECT_STREQ(internal->getText().c_str(), tr("internal_node"));
        EXPECT_EQ(firstRowShows(blue), c.prefab);
        shown()->getTree()->setCurrentItem(0);
        EXPECT_EQ(internal->isHidden(), !c.prefab);
        shown()->getTree()->setCurrentItem(-1);
        EXPECT_TRUE(internal->isHidden());
        internal->click();
        EXPECT_TRUE(subNode);
        EXPECT_FALSE(ok);
        EXPECT_EQ(node, -1);
        EXPECT_EQ(shown()->getParent(), nullptr); // closed
    }
}

using PickerKeyTest = LinePanelFixture;

// A double click on a named material key clears it; on an empty one it picks a material for the
// key, and a cancelled pick leaves the key empty.
TEST_F(PickerKeyTest, AnEmptyMaterialKeyPicksAMaterial)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    clearMessages();
    auto* parameter = static_cast<FParameterStringMaterial*>(single(13));
    ASSERT_EQ(parameter->getTypeName(), "Object.material");
    auto* key = static_cast<FKeyString*>(parameter->getKey(0));
    const struct {
        std::vector<std::string> answers;
        const char* value;
    } cases[] = {{{}, ""}, {{"Cancel"}, ""}, {{"surface.brick.brick_mossy"}, "brick_mossy"}, {{}, ""}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.value);
        queue(root()->getAutomation(), c.answers);
        key->getLineKey()->onDClick();
        EXPECT_EQ(key->getValue(), c.value);
        EXPECT_EQ(parameter->engine_parameter()->getKey(0).value, c.value);
    }
    EXPECT_EQ(messages(), std::vector<int>(3, TRACK_MSG_KEYS_CHANGED));
}
