#include "ui/MaterialParamSelectPanel.h"

#include "kit/jLog.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "ui/UITreeBox.h"

MaterialParamSelectPanel::MaterialParamSelectPanel(UIRoot* root, Material* material, bool* ok, jString* result)
    : PickerPanel(root), m_ok(ok), m_result(result), m_material(material)
{
    refresh();
}

void MaterialParamSelectPanel::refresh()
{
    jVector<MaterialParameter*> parameters;
    const int count = m_material ? m_material->getNumParameters() : 0;
    for (int i = 0; i < count; ++i) {
        MaterialParameter* parameter = m_material->getParameter(i);
        if (parameter->getTag().nempty() && passes_filter(parameter->getTag()))
            parameters.append(parameter);
    }
    m_tree->clear();
    set_hierarchy(m_tree, parameters);
}

void MaterialParamSelectPanel::set_hierarchy(UITreeBox* tree, const jVector<MaterialParameter*>& parameters)
{
    for (MaterialParameter* parameter : parameters) {
        if (!parameter) {
            jLog::error("%s:%s", "MaterialParamSelectPanel::set_hierarchy", "m");
            continue;
        }
        tree->setItemData(tree->addItem(parameter->getTag().c_str()), parameter);
    }
}

void MaterialParamSelectPanel::choose(int item)
{
    if (m_ok)
        *m_ok = true;
    if (m_result)
        *m_result = m_tree->getItemText(item);
}
