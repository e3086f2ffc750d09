#pragma once

#include "ui/NodePickerPanel.h"

class UIButton;
class World;

// Picks a node of a world for a parameter type. Prefabs show in blue; while one is current, the
// "internal node" button asks the caller to go on to the prefab's internal nodes.
class TrackNodeSelectPanel : public NodePickerPanel {
public:
    // world: where to look (null lists nothing); type: the registration name. ok and node (each may
    // be null) receive true and the chosen node's id; needSubNode (may be null) receives true when
    // the user asks for an internal node instead. Each is left as it is otherwise.
    TrackNodeSelectPanel(UIRoot* root, World* world, const jString& type, bool* ok, int* node, bool* needSubNode);

protected:
    bool collect_nodes(const TrackReg& reg, jVector<Node*>& nodes) const override;
    void decorate_item(int item, const Node& node) override;
    // Shows the internal-node button only while a prefab is current.
    void cb_tree_changed(const UIEventChanged* e, UIElement* sender) override;

private:
    void cb_click_sub_node(const UIEventMouse* e, UIElement* sender);

    bool* m_need_open_sub_node;
    World* m_world;
    UIButton* m_sub_node;
};
