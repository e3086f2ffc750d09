#include "scene/MaterialManager.h"

#include "kit/jLog.h"
#include "scene/Material.h"

MaterialManager::~MaterialManager() { clear(); }

Material* MaterialManager::getMaterial(int index) const
{
    return index >= 0 && index < m_materials.size() ? m_materials[index] : nullptr;
}

Material* MaterialManager::get(const jString& name) const
{
    for (Material* material : m_materials) {
        if (material->getName() == name)
            return material;
    }
    return nullptr;
}

bool MaterialManager::add(Material* material)
{
    if (!material) {
        jLog::error("%s:%s", "MaterialManager::add", "material");
        return false;
    }
    if (get(material->getName())) {
        jLog::error("%s:a material named \"%s\" exists already", "MaterialManager::add", material->getName().c_str());
        return false;
    }
    m_materials.append(material);
    return true;
}

void MaterialManager::clear()
{
    // Derived materials go first so that no material outlives the base it inherits from.
    for (int i = m_materials.size() - 1; i >= 0; --i)
        jDelete(m_materials[i], "engine/scene/MaterialManager", __LINE__, "MaterialManager::clear");
    m_materials.release();
    m_owner = nullptr;
}

void MaterialManager::replace(jVector<Material*>& materials, const void* owner)
{
    clear();
    m_materials = std::move(materials);
    materials.release();
    m_owner = owner;
}
