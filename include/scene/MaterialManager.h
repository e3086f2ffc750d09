#pragma once

#include "kit/jString.h"
#include "kit/jVector.h"

class Material;

// The engine's materials, in the order they were added (a base always comes before the materials
// derived from it when they come from a .world file). The manager owns them.
class MaterialManager {
public:
    MaterialManager() = default;
    // Deletes every material.
    ~MaterialManager();
    MaterialManager(const MaterialManager&) = delete;
    MaterialManager& operator=(const MaterialManager&) = delete;

    // Returns the number of materials.
    int getNumMaterials() const { return m_materials.size(); }
    // Returns the material at index, or null for a bad index.
    Material* getMaterial(int index) const;
    // Returns the material with this name, or null.
    Material* get(const jString& name) const;

    // Takes ownership of material and appends it. Returns false and logs (the material is then
    // still the caller's) when it is null or its name is taken.
    bool add(Material* material);
    // Deletes every material; the owner becomes null.
    void clear();

    // Replaces every material by materials (taking them, and emptying the list) and records owner,
    // the object (a world) that installed them.
    void replace(jVector<Material*>& materials, const void* owner);
    // Returns the object that installed the current materials, or null.
    const void* getOwner() const { return m_owner; }

private:
    jVector<Material*> m_materials;
    const void* m_owner = nullptr;
};
