#include "ui/TrackSubNodeSelectPanel.h"

#include "anim/TrackReg.h"
#include "scene/Node.h"

TrackSubNodeSelectPanel::TrackSubNodeSelectPanel(UIRoot* root, Node* prefab, const jString& type, bool* ok, int* node)
    : NodePickerPanel(root, type, ok, node), m_prefab(prefab)
{
    refresh();
}

bool TrackSubNodeSelectPanel::collect_nodes(const TrackReg& reg, jVector<Node*>& nodes) const
{
    if (!m_prefab)
        return false;
    for (int i = 0; i < m_prefab->getNumInternalNodes(); ++i) {
        Node* node = m_prefab->getInternalNode(i);
        if (reg.isAcceptNodeType(node->getType()))
            nodes.append(node);
    }
    return true;
}
