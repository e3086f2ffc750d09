#pragma once

#include "ui/NodePickerPanel.h"

// Picks an internal node of a prefab for a parameter type (the editor camera stays on offer first
// when the type accepts it).
class TrackSubNodeSelectPanel : public NodePickerPanel {
public:
    // prefab: whose internal nodes to list (null lists nothing); type: the registration name. ok
    // and node (each may be null) receive true and the chosen node's id, and are left as they are
    // when nothing is chosen.
    TrackSubNodeSelectPanel(UIRoot* root, Node* prefab, const jString& type, bool* ok, int* node);

protected:
    bool collect_nodes(const TrackReg& reg, jVector<Node*>& nodes) const override;

private:
    Node* m_prefab;
};
