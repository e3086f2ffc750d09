#pragma once

#include "kit/jVector.h"
#include "ui/PickerPanel.h"

class Material;
class MaterialParameter;

// Picks a parameter of a material by its tag: a flat list of every tagged parameter, whatever its
// type, in the material's order (untagged parameters cannot be bound, so they never show). A chosen
// item writes the tag.
class MaterialParamSelectPanel : public PickerPanel {
public:
    // material: whose parameters to list (null lists none); ok and result (each may be null)
    // receive true and the chosen tag, and are left as they are when nothing is chosen.
    MaterialParamSelectPanel(UIRoot* root, Material* material, bool* ok, jString* result);

    // Lists the tagged parameters whose lower-case tag contains the filter.
    void refresh() override;
    // Adds one top-level item per parameter to tree, showing its tag and carrying the parameter.
    // Null entries are logged and left out.
    void set_hierarchy(UITreeBox* tree, const jVector<MaterialParameter*>& parameters);

protected:
    void choose(int item) override;

private:
    bool* m_ok;
    jString* m_result;
    Material* m_material;
};
