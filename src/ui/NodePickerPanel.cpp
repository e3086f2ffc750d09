#include "ui/NodePickerPanel.h"

#include "anim/Track.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "ui/UITreeBox.h"

NodePickerPanel::NodePickerPanel(UIRoot* root, const jString& type, bool* ok, int* node)
    : PickerPanel(root), m_ok(ok), m_result(node), m_type(type)
{
}

void NodePickerPanel::refresh()
{
    const TrackReg* reg = Track::GetRegByName(m_type);
    if (!reg)
        return;
    jVector<Node*> nodes;
    if (reg->isAcceptNodeType(EDITOR_CAMERA)) {
        if (Node* camera = Node::GetNodeByName(World::EDITOR_CAMERA_NAME))
            nodes.append(camera);
    }
    if (!collect_nodes(*reg, nodes))
        return;
    m_tree->clear();
    for (const Node* node : nodes) {
        if (!passes_filter(node->getName()))
            continue;
        const int item = m_tree->addItem(node->getName().c_str());
        m_tree->setItemTag(item, node->getID());
        decorate_item(item, *node);
    }
}

void NodePickerPanel::decorate_item(int, const Node&) {}

void NodePickerPanel::choose(int item)
{
    if (m_ok)
        *m_ok = true;
    if (m_result)
        *m_result = m_tree->getItemTag(item);
}
