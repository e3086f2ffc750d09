#pragma once

#include "kit/jVector.h"
#include "ui/PickerPanel.h"

class Node;
class TrackReg;

// Picks a scene node for a parameter type: a flat list of the nodes whose type the type's
// registration accepts, the editor camera first when it accepts the editor camera's type. Each item
// shows a node's name; a chosen item writes the node's id.
class NodePickerPanel : public PickerPanel {
public:
    // Lists the candidates whose lower-case name contains the filter. Without a registration for
    // the type, or without a place to look, the tree is left as it is.
    void refresh() override;

protected:
    // type: the registration name; ok and node (each may be null) receive true and the chosen
    // node's id, and are left as they are when nothing is chosen. A deriving picker refreshes in
    // its constructor, once it knows where to look.
    NodePickerPanel(UIRoot* root, const jString& type, bool* ok, int* node);

    // Appends the nodes reg accepts from where the picker looks, in their order; false when there
    // is nowhere to look.
    virtual bool collect_nodes(const TrackReg& reg, jVector<Node*>& nodes) const = 0;
    // Dresses the item listing node; the base leaves it plain.
    virtual void decorate_item(int item, const Node& node);
    void choose(int item) override;

private:
    bool* m_ok;
    int* m_result;
    jString m_type;
};
