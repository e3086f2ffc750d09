#pragma once

#include "ui/PickerPanel.h"

// Picks a parameter type: every registration name, in the registration order, as a tree split at
// its dots ("Node.position" is "position" under "Node"). Branches start folded and show unfolded
// while a search narrows the tree. A chosen leaf writes its full dotted name.
class TrackTypeSelectPanel : public PickerPanel {
public:
    // ok and result (each may be null) receive true and the chosen name; they are left as they
    // are when nothing is chosen.
    TrackTypeSelectPanel(UIRoot* root, bool* ok, jString* result);

    // Lists the registration names whose lower-case form contains the filter.
    void refresh() override;
    // Returns the dotted name of a leaf, from the top-level item down ("Node.position"); a branch
    // has no name of its own: it is logged and the null string returned.
    jString get_full_node_type_name(int item);

protected:
    void choose(int item) override;

private:
    bool* m_ok;
    jString* m_result;
};
