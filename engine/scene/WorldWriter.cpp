#include "scene/WorldWriter.h"

#include <cstdlib>

#include "io/Package.h"
#include "kit/jString.h"
#include "scene/Material.h"
#include "scene/MaterialManager.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

// Floats are written as the shortest decimal that reads back as the same float ("0.1", not
// "0.10000000149011612"), so files stay readable and stable across load and save.
double shortest(float value) { return std::strtod(ToString(value).c_str(), nullptr); }

void add_floats(Package& parent, const char* name, const float* values, int count)
{
    Package* list = parent.addArray(name);
    for (int i = 0; i < count; ++i)
        list->addDouble(nullptr, shortest(values[i]));
}

void add_vec3(Package& parent, const char* name, const vec3& v)
{
    const float values[3] = {v.x, v.y, v.z};
    add_floats(parent, name, values, 3);
}

void add_vec4(Package& parent, const char* name, const vec4& v)
{
    const float values[4] = {v.x, v.y, v.z, v.w};
    add_floats(parent, name, values, 4);
}

} // namespace

void WorldWriter::write(const World& world, const MaterialManager& materials, Package& root)
{
    root.setObject();
    root.addString("format", "kuvo.world");
    root.addInt("version", World::FORMAT_VERSION);
    write_render(world, root);
    write_materials(materials, root);
    Package* nodes = root.addArray("nodes");
    for (int i = 0; i < world.getNumNodes(); ++i)
        write_node(*world.getNode(i), *nodes);
}

void WorldWriter::write_render(const World& world, Package& root)
{
    Package* render = root.addObject("render");
    render->addDouble("exposure", world.getExposure());
    add_vec4(*render, "fog_color", world.getFogColor());
}

void WorldWriter::write_materials(const MaterialManager& materials, Package& root)
{
    Package* list = root.addArray("materials");
    for (int i = 0; i < materials.getNumMaterials(); ++i) {
        const Material* material = materials.getMaterial(i);
        Package* item = list->addObject(nullptr);
        item->addString("name", material->getName().c_str());
        if (material->getParent())
            item->addString("parent", material->getParent()->getName().c_str());
        Package* parameters = item->addArray("parameters");
        for (int p = 0; p < material->getNumParameters(); ++p) {
            const MaterialParameter* parameter = material->getParameter(p);
            // Inherited values are the base's to write.
            if (parameter->isInherited())
                continue;
            Package* entry = parameters->addObject(nullptr);
            entry->addString("tag", parameter->getTag().c_str());
            entry->addInt("type", parameter->getType());
            entry->addInt("components", parameter->getNumComponents());
            const vec4& value = parameter->getValue();
            const float values[4] = {value.x, value.y, value.z, value.w};
            add_floats(*entry, "value", values, parameter->getNumComponents());
        }
    }
}

void WorldWriter::write_node(const Node& node, Package& list)
{
    Package* item = list.addObject(nullptr);
    item->addInt("id", node.getID());
    item->addString("name", node.getName().c_str());
    item->addString("type", node.getTypeName());
    item->addBool("enabled", node.isEnabled());
    add_vec3(*item, "position", node.getPosition());
    add_vec3(*item, "rotation", node.getRotation());
    add_vec3(*item, "scale", node.getScale());
    if (NodeType::hasLight(node.getType())) {
        Package* light = item->addObject("light");
        add_vec4(*light, "color", node.getLightColor());
        light->addDouble("intensity", shortest(node.getLightIntensity()));
    }
    if (NodeType::hasCamera(node.getType()))
        item->addObject("camera")->addDouble("fov", shortest(node.getCameraFov()));
    if (NodeType::hasSurface(node.getType())) {
        item->addString("material", node.getMaterial().c_str());
        item->addString("mesh", node.getMesh().c_str());
    }
    if (node.getType() == OBJECT_PREFAB) {
        Package* internal = item->addArray("internal");
        for (int i = 0; i < node.getNumInternalNodes(); ++i)
            write_node(*node.getInternalNode(i), *internal);
    }
}
