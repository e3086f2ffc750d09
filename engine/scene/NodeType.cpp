#include "scene/NodeType.h"

#include <cstring>

namespace {

struct TypeName {
    int type;
    const char* name;
};

constexpr TypeName TYPE_NAMES[] = {
    {NODE_DUMMY, "NodeDummy"},       {OBJECT_MESH, "ObjectMesh"}, {LIGHT_POINT, "LightPoint"},
    {LIGHT_SPOT, "LightSpot"},       {CAMERA, "Camera"},          {OBJECT_PREFAB, "ObjectPrefab"},
    {EDITOR_CAMERA, "EditorCamera"},
};

} // namespace

const char* NodeType::getName(int type)
{
    for (const TypeName& entry : TYPE_NAMES) {
        if (entry.type == type)
            return entry.name;
    }
    return nullptr;
}

int NodeType::findByName(const char* name)
{
    if (!name)
        return -1;
    for (const TypeName& entry : TYPE_NAMES) {
        if (std::strcmp(entry.name, name) == 0)
            return entry.type;
    }
    return -1;
}

bool NodeType::isValid(int type) { return getName(type) != nullptr; }

bool NodeType::hasLight(int type) { return type == LIGHT_POINT || type == LIGHT_SPOT; }

bool NodeType::hasCamera(int type) { return type == CAMERA || type == EDITOR_CAMERA; }

bool NodeType::hasSurface(int type) { return type == OBJECT_MESH; }
