#include "ui/TrackNodeSelectPanel.h"

#include <string>

#include "anim/TrackReg.h"
#include "editor/DataDir.h"
#include "editor/Locale.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "scene/Engine.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "ui/UIButton.h"
#include "ui/UIHLayout.h"
#include "ui/UITreeBox.h"

namespace {

// The colour of a prefab's row, which sets it apart as the way to the prefab's internal nodes.
const vec4 PREFAB_COLOR(0.2980392f, 0.5019608f, 0.8509804f, 1.0f);

// Where an editor icon lives: the engine names it under the icon folder, the data root places it.
std::string icon_path(const char* name)
{
    return DataDir::resolve((jString(Engine::get()->getEditorIconPath()) + name).c_str());
}

} // namespace

TrackNodeSelectPanel::TrackNodeSelectPanel(UIRoot* root, World* world, const jString& type, bool* ok, int* node,
                                           bool* needSubNode)
    : NodePickerPanel(root, type, ok, node), m_need_open_sub_node(needSubNode), m_world(world),
      m_sub_node(jNew<UIButton>("src/ui/TrackNodeSelectPanel", __LINE__, "TrackNodeSelectPanel::TrackNodeSelectPanel",
                                root, tr("internal_node"), icon_path("dialog_other.png").c_str()))
{
    m_sub_node->setTooltip(tr("tip_dialog_other"));
    m_sub_node->setHidden(true);
    m_sub_node->sigClick = bind(&TrackNodeSelectPanel::cb_click_sub_node, this);
    refresh();
    getButtonRow()->addChild(m_sub_node, UI_EXPAND_NONE);
}

bool TrackNodeSelectPanel::collect_nodes(const TrackReg& reg, jVector<Node*>& nodes) const
{
    if (!m_world)
        return false;
    for (int i = 0; i < m_world->getNumNodes(); ++i) {
        Node* node = m_world->getNode(i);
        if (reg.isAcceptNodeType(node->getType()))
            nodes.append(node);
    }
    return true;
}

void TrackNodeSelectPanel::decorate_item(int item, const Node& node)
{
    if (node.getType() == OBJECT_PREFAB)
        m_tree->setItemColor(item, PREFAB_COLOR);
}

void TrackNodeSelectPanel::cb_tree_changed(const UIEventChanged*, UIElement*)
{
    m_sub_node->setHidden(true);
    const int item = m_tree->getCurrentItem();
    if (item == -1 || !m_world)
        return;
    const Node* node = m_world->getNodeByID(m_tree->getItemTag(item));
    if (node && node->getType() == OBJECT_PREFAB)
        m_sub_node->setHidden(false);
}

void TrackNodeSelectPanel::cb_click_sub_node(const UIEventMouse*, UIElement*)
{
    if (!m_need_open_sub_node) {
        jLog::error("%s:%s", "TrackNodeSelectPanel::cb_click_sub_node", "m_need_open_sub_node");
        return;
    }
    *m_need_open_sub_node = true;
    choose_leaf_and_close();
}
