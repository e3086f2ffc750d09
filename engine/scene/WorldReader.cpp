#include "scene/WorldReader.h"

#include <cfloat>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "io/Package.h"
#include "kit/jLog.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

constexpr const char* FORMAT_NAME = "kuvo.world";

const char* package_type_name(const Package* value)
{
    switch (value->getType()) {
    case Package::NUL: return "null";
    case Package::BOOL: return "a boolean";
    case Package::INT:
    case Package::DOUBLE: return "a number";
    case Package::STRING: return "a string";
    case Package::ARRAY:
    case Package::NUMBERS: return "an array";
    case Package::OBJECT: return "an object";
    }
    return "a value";
}

// Names an element of a list for messages: "nodes[2]", "nodes[2].internal[0]".
jString element_name(const jString& parent, const char* list, int index)
{
    char text[64];
    std::snprintf(text, sizeof(text), "%s[%d]", list, index);
    return parent.empty() ? jString(text) : parent + "." + text;
}

} // namespace

WorldReader::WorldReader(const char* path) : m_path(path) {}

bool WorldReader::read(const Package* root, World& world, jVector<Material*>& materials)
{
    m_context = jString();
    return expect_object(root, "the document") && read_header(root) && read_render(root, world) &&
           read_materials(root, materials) && read_nodes(member(root, "nodes", false), world, nullptr);
}

bool WorldReader::read_header(const Package* root)
{
    jString format;
    int version = 0;
    if (!read_text(root, "format", true, format) || !read_int(root, "version", true, version))
        return false;
    if (format != FORMAT_NAME)
        return fail(root->find("format"), "\"format\" is \"%s\", expected \"%s\"", format.c_str(), FORMAT_NAME);
    if (version < 1 || version > World::FORMAT_VERSION)
        return fail(root->find("version"), "\"version\" %d is not supported (this build reads 1 to %d)", version,
                    World::FORMAT_VERSION);
    return true;
}

bool WorldReader::read_render(const Package* root, World& world)
{
    const Package* render = member(root, "render", false);
    if (!render)
        return true;
    if (!expect_object(render, "\"render\""))
        return false;
    double exposure = world.getExposure();
    vec4 fog = world.getFogColor();
    const Package* value = member(render, "exposure", false);
    if (value) {
        if (!value->isNumber())
            return fail(value, "\"exposure\" must be a number, not %s", package_type_name(value));
        exposure = value->getDouble();
    }
    if (!read_vec4(render, "fog_color", fog))
        return false;
    world.setExposure(exposure);
    world.setFogColor(fog);
    return true;
}

bool WorldReader::read_materials(const Package* root, jVector<Material*>& materials)
{
    const Package* list = member(root, "materials", false);
    if (!list)
        return true;
    if (!expect_array(list, "\"materials\""))
        return false;
    for (int i = 0; i < list->getNumChildren(); ++i) {
        m_context = element_name(jString(), "materials", i);
        if (!read_material(list->getChild(i), materials))
            return false;
    }
    m_context = jString();
    return true;
}

bool WorldReader::read_material(const Package* item, jVector<Material*>& materials)
{
    jString name;
    jString parent_name;
    if (!expect_object(item, "a material") || !read_text(item, "name", true, name) ||
        !read_text(item, "parent", false, parent_name))
        return false;
    if (name.empty())
        return fail(item->find("name"), "a material needs a name");
    Material* parent = nullptr;
    for (Material* material : materials) {
        if (material->getName() == name)
            return fail(item->find("name"), "material \"%s\" is defined twice", name.c_str());
        if (material->getName() == parent_name)
            parent = material;
    }
    if (parent_name.nempty() && !parent)
        return fail(item->find("parent"), "parent material \"%s\" is not defined before \"%s\"", parent_name.c_str(),
                    name.c_str());
    Material* material = jNew<Material>("engine/scene/WorldReader", __LINE__, "WorldReader::read_material", name, parent);
    materials.append(material);
    const Package* parameters = member(item, "parameters", false);
    if (!parameters)
        return true;
    if (!expect_array(parameters, "\"parameters\""))
        return false;
    for (int i = 0; i < parameters->getNumChildren(); ++i) {
        if (!read_parameter(parameters->getChild(i), material))
            return false;
    }
    return true;
}

bool WorldReader::read_parameter(const Package* item, Material* material)
{
    jString tag;
    int type = 0;
    int components = 0;
    if (!expect_object(item, "a material parameter") || !read_text(item, "tag", true, tag) ||
        !read_int(item, "type", true, type) || !read_int(item, "components", true, components))
        return false;
    if (type < 0 || type >= MaterialParameter::NUM_TYPES)
        return fail(item->find("type"), "parameter \"%s\": type code %d is not 0 to 10", tag.c_str(), type);
    if (components < 1 || components > 4)
        return fail(item->find("components"), "parameter \"%s\": %d components, expected 1 to 4", tag.c_str(),
                    components);
    float v[4] = {0.0f, 0.0f, 0.0f, 0.0f};
    if (!member(item, "value", true) || !read_floats(item, "value", components, v))
        return false;
    vec4 value(v[0], v[1], v[2], v[3]);
    MaterialParameter* existing = material->getParameterByID(material->findParameterIDByTag(tag));
    if (existing && !existing->isInherited())
        return fail(item->find("tag"), "parameter \"%s\" is defined twice", tag.c_str());
    if (existing && (existing->getType() != type || existing->getNumComponents() != components))
        return fail(item, "parameter \"%s\" overrides the base's type %d with %d components; it must keep them",
                    tag.c_str(), existing->getType(), existing->getNumComponents());
    material->addParameter(tag, type, components, value);
    return true;
}

bool WorldReader::read_nodes(const Package* list, World& world, Node* prefab)
{
    if (!list)
        return true;
    if (!expect_array(list, prefab ? "\"internal\"" : "\"nodes\""))
        return false;
    jString outer = m_context;
    for (int i = 0; i < list->getNumChildren(); ++i) {
        m_context = element_name(outer, prefab ? "internal" : "nodes", i);
        if (!read_node(list->getChild(i), world, prefab))
            return false;
    }
    m_context = outer;
    return true;
}

bool WorldReader::read_node(const Package* item, World& world, Node* prefab)
{
    int id = 0;
    jString name;
    jString type_name;
    if (!expect_object(item, "a node") || !read_int(item, "id", true, id) || !read_text(item, "name", true, name) ||
        !read_text(item, "type", true, type_name))
        return false;
    int type = NodeType::findByName(type_name.c_str());
    if (type < 0 || type == EDITOR_CAMERA)
        return fail(item->find("type"), "unknown node type \"%s\"", type_name.c_str());
    if (id < 0 || id >= World::EDITOR_CAMERA_ID)
        return fail(item->find("id"), "node id %d is out of range", id);
    if (world.getNodeByID(id))
        return fail(item->find("id"), "node id %d is used twice", id);
    const Package* internal = member(item, "internal", false);
    if (internal && type != OBJECT_PREFAB)
        return fail(internal, "only ObjectPrefab nodes have \"internal\" nodes");
    Node* node = world.addNode(type, name, id, prefab);
    return read_node_properties(item, node) && read_nodes(internal, world, node);
}

bool WorldReader::read_node_properties(const Package* item, Node* node)
{
    vec3 position = node->getPosition();
    vec3 rotation = node->getRotation();
    vec3 scale = node->getScale();
    bool enabled = node->isEnabled();
    if (!read_bool(item, "enabled", enabled) || !read_vec3(item, "position", position) ||
        !read_vec3(item, "rotation", rotation) || !read_vec3(item, "scale", scale))
        return false;
    node->setEnabled(enabled);
    node->setPosition(position);
    node->setRotation(rotation);
    node->setScale(scale);
    return read_light(item, node) && read_camera(item, node) && read_surface(item, node);
}

bool WorldReader::read_light(const Package* item, Node* node)
{
    const Package* light = NodeType::hasLight(node->getType()) ? member(item, "light", false) : nullptr;
    if (!light)
        return true;
    vec4 color = node->getLightColor();
    float intensity = node->getLightIntensity();
    if (!expect_object(light, "\"light\"") || !read_vec4(light, "color", color) ||
        !read_float(light, "intensity", intensity))
        return false;
    node->setLightColor(color);
    node->setLightIntensity(intensity);
    return true;
}

bool WorldReader::read_camera(const Package* item, Node* node)
{
    const Package* camera = NodeType::hasCamera(node->getType()) ? member(item, "camera", false) : nullptr;
    if (!camera)
        return true;
    float fov = node->getCameraFov();
    if (!expect_object(camera, "\"camera\"") || !read_float(camera, "fov", fov))
        return false;
    node->setCameraFov(fov);
    return true;
}

bool WorldReader::read_surface(const Package* item, Node* node)
{
    if (!NodeType::hasSurface(node->getType()))
        return true;
    jString material;
    jString mesh;
    if (!read_text(item, "material", false, material) || !read_text(item, "mesh", false, mesh))
        return false;
    node->setMaterial(material);
    node->setMesh(mesh);
    return true;
}

const Package* WorldReader::member(const Package* object, const char* name, bool required)
{
    const Package* value = object->find(name);
    if (!value && required)
        fail(object, "missing field \"%s\"", name);
    return value;
}

bool WorldReader::expect_object(const Package* value, const char* what)
{
    return value->isObject() || fail(value, "%s must be an object, not %s", what, package_type_name(value));
}

bool WorldReader::expect_array(const Package* value, const char* what)
{
    return value->isArray() || fail(value, "%s must be an array, not %s", what, package_type_name(value));
}

bool WorldReader::read_int(const Package* object, const char* name, bool required, int& out)
{
    const Package* value = member(object, name, required);
    if (!value)
        return !required;
    if (!value->isNumber())
        return fail(value, "\"%s\" must be a whole number, not %s", name, package_type_name(value));
    if (value->getType() != Package::INT || value->getInt() < INT32_MIN || value->getInt() > INT32_MAX)
        return fail(value, "\"%s\" must be a whole number, not %g", name, value->getDouble());
    out = static_cast<int>(value->getInt());
    return true;
}

bool WorldReader::read_text(const Package* object, const char* name, bool required, jString& out)
{
    const Package* value = member(object, name, required);
    if (!value)
        return !required;
    if (!value->isString())
        return fail(value, "\"%s\" must be a string, not %s", name, package_type_name(value));
    out = jString(value->getString(), value->getStringLength());
    return true;
}

bool WorldReader::read_bool(const Package* object, const char* name, bool& out)
{
    const Package* value = member(object, name, false);
    if (!value)
        return true;
    if (!value->isBool())
        return fail(value, "\"%s\" must be true or false, not %s", name, package_type_name(value));
    out = value->getBool();
    return true;
}

bool WorldReader::read_float(const Package* object, const char* name, float& out)
{
    const Package* value = member(object, name, false);
    return !value || read_number(value, name, false, out);
}

bool WorldReader::read_floats(const Package* object, const char* name, int count, float* out)
{
    const Package* value = member(object, name, false);
    if (!value)
        return true;
    if (!value->isArray() || value->getNumChildren() != count)
        return fail(value, "\"%s\" must be an array of %d numbers", name, count);
    for (int i = 0; i < count; ++i) {
        if (!read_number(value->getChild(i), name, true, out[i]))
            return false;
    }
    return true;
}

bool WorldReader::read_number(const Package* value, const char* name, bool element, float& out)
{
    if (!value->isNumber())
        return fail(value, "%s\"%s\" must be a number, not %s", element ? "every element of " : "", name,
                    package_type_name(value));
    double d = value->getDouble();
    if (!(std::fabs(d) <= FLT_MAX))
        return fail(value, "\"%s\" holds %g, which is out of the float range", name, d);
    out = static_cast<float>(d);
    return true;
}

bool WorldReader::read_vec3(const Package* object, const char* name, vec3& out)
{
    float v[3] = {out.x, out.y, out.z};
    if (!read_floats(object, name, 3, v))
        return false;
    out = vec3(v[0], v[1], v[2]);
    return true;
}

bool WorldReader::read_vec4(const Package* object, const char* name, vec4& out)
{
    float v[4] = {out.x, out.y, out.z, out.w};
    if (!read_floats(object, name, 4, v))
        return false;
    out = vec4(v[0], v[1], v[2], v[3]);
    return true;
}

bool WorldReader::fail(const Package* at, const char* format, ...)
{
    char reason[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(reason, sizeof(reason), format, args);
    va_end(args);
    const char* separator = m_context.empty() ? "" : ": ";
    if (at && at->getLine() > 0)
        jLog::error("%s:%s:%d:%d: %s%s%s", "World::load", m_path, at->getLine(), at->getColumn(), m_context.c_str(),
                    separator, reason);
    else
        jLog::error("%s:%s: %s%s%s", "World::load", m_path, m_context.c_str(), separator, reason);
    return false;
}
