#pragma once

#include "kit/jVector.h"
#include "ui/PickerPanel.h"

class Material;

// Picks a material for a parameter type: the engine's materials the type's registration accepts,
// each derived material under its base. Activating any item chooses it, a base material with
// derived ones included; OK chooses only a material without derived ones, so a base cannot be
// taken by accident while its branch is being opened. A chosen item writes the material's name.
class MaterialSelectPanel : public PickerPanel {
public:
    // type: the registration name; ok and result (each may be null) receive true and the chosen
    // material's name, and are left as they are when nothing is chosen.
    MaterialSelectPanel(UIRoot* root, const jString& type, bool* ok, jString* result);

    // Lists the accepted materials; a type without a registration is logged and lists none.
    void refresh() override;
    // Adds materials to tree: a material already there (as a derived one of an earlier material)
    // keeps its item, any other becomes a top-level item, and its derived materials go under it.
    // While a search is typed, a material shows only when its name or the name of one of its
    // derived materials contains the filter, and its branch shows unfolded. Null entries are
    // logged and left out.
    void set_hierarchy(UITreeBox* tree, const jVector<Material*>& materials);

protected:
    void choose(int item) override;
    // Chooses the current item, branch or leaf, and closes.
    void cb_tree_mouse(const UIEventMouse* e, UIElement* sender) override;

private:
    // Whether the filter keeps material: its own name or the name of one of its derived
    // materials passes.
    bool passes_with_children(const Material& material) const;

    bool* m_ok;
    jString* m_result;
    jString m_type;
};
