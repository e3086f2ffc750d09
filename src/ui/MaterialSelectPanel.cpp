#include "ui/MaterialSelectPanel.h"

#include "anim/Track.h"
#include "kit/jLog.h"
#include "kit/jMap.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "ui/UITreeBox.h"

namespace {

// Adds an item naming material under parent (-1: at the top level), carrying the material, and
// records it by name so that the material's own entry finds it later.
int add_material_item(UITreeBox* tree, jMap<jString, int>& items, Material* material, int parent)
{
    const int item = tree->addItem(material->getName().c_str(), parent);
    tree->setItemData(item, material);
    items.insert(material->getName(), item);
    return item;
}

} // namespace

MaterialSelectPanel::MaterialSelectPanel(UIRoot* root, const jString& type, bool* ok, jString* result)
    : PickerPanel(root), m_ok(ok), m_result(result), m_type(type)
{
    refresh();
}

void MaterialSelectPanel::refresh()
{
    const TrackReg* reg = Track::GetRegByName(m_type);
    if (!reg)
        jLog::error("%s:\"%s\" has not registered in track", "MaterialSelectPanel::refresh", m_type.c_str());
    const MaterialManager* manager = Engine::get()->getMaterialManager();
    jVector<Material*> materials;
    for (int i = 0; i < manager->getNumMaterials(); ++i) {
        Material* material = manager->getMaterial(i);
        if (reg && reg->isAcceptMaterial(material))
            materials.append(material);
    }
    m_tree->clear();
    set_hierarchy(m_tree, materials);
}

bool MaterialSelectPanel::passes_with_children(const Material& material) const
{
    if (passes_filter(material.getName()))
        return true;
    for (int i = 0; i < material.getNumChildren(); ++i) {
        if (passes_filter(material.getChild(i)->getName()))
            return true;
    }
    return false;
}

void MaterialSelectPanel::set_hierarchy(UITreeBox* tree, const jVector<Material*>& materials)
{
    jMap<jString, int> items;
    for (Material* material : materials) {
        if (!material) {
            jLog::error("%s:%s", "MaterialSelectPanel::set_hierarchy", "m");
            continue;
        }
        if (!passes_with_children(*material))
            continue;
        const int* known = items.lookup(material->getName());
        const int item = known ? *known : add_material_item(tree, items, material, -1);
        for (int i = 0; i < material->getNumChildren(); ++i)
            add_material_item(tree, items, material->getChild(i), item);
        if (material->getNumChildren() > 0)
            tree->setItemHidden(item, m_filter.empty());
    }
}

void MaterialSelectPanel::choose(int item)
{
    if (m_ok)
        *m_ok = true;
    if (m_result)
        *m_result = m_tree->getItemText(item);
}

void MaterialSelectPanel::cb_tree_mouse(const UIEventMouse*, UIElement*)
{
    const int item = m_tree->getCurrentItem();
    if (item != -1)
        choose(item);
    closeDialog();
}
