#include "anim/TrackRegTable.h"

#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/NodeType.h"
#include "scene/World.h"

namespace {

vec3 toVec3(const TrackValue& v)
{
    return vec3(static_cast<float>(v.n[0]), static_cast<float>(v.n[1]), static_cast<float>(v.n[2]));
}

vec4 toVec4(const TrackValue& v)
{
    return vec4(static_cast<float>(v.n[0]), static_cast<float>(v.n[1]), static_cast<float>(v.n[2]),
                static_cast<float>(v.n[3]));
}

void fromVec3(const vec3& a, TrackValue& v)
{
    v.n[0] = a.x;
    v.n[1] = a.y;
    v.n[2] = a.z;
}

void fromVec4(const vec4& a, TrackValue& v)
{
    v.n[0] = a.x;
    v.n[1] = a.y;
    v.n[2] = a.z;
    v.n[3] = a.w;
}

// Node properties. Each getter and setter checks that the target carries a node.

bool getEnabled(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    v.n[0] = t.node->isEnabled() ? 1.0 : 0.0;
    return true;
}
void setEnabled(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setEnabled(v.n[0] != 0.0);
}

bool getPosition(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    fromVec3(t.node->getPosition(), v);
    return true;
}
void setPosition(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setPosition(toVec3(v));
}

bool getRotation(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    fromVec3(t.node->getRotation(), v);
    return true;
}
void setRotation(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setRotation(toVec3(v));
}

bool getScale(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    fromVec3(t.node->getScale(), v);
    return true;
}
void setScale(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setScale(toVec3(v));
}

bool getWorldPosition(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    dvec3 p = t.node->getWorldPosition();
    v.n[0] = p.x;
    v.n[1] = p.y;
    v.n[2] = p.z;
    return true;
}
void setWorldPosition(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setWorldPosition(dvec3(v.n[0], v.n[1], v.n[2]));
}

bool getLightColor(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    fromVec4(t.node->getLightColor(), v);
    return true;
}
void setLightColor(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setLightColor(toVec4(v));
}

bool getLightIntensity(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    v.n[0] = t.node->getLightIntensity();
    return true;
}
void setLightIntensity(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setLightIntensity(static_cast<float>(v.n[0]));
}

bool getCameraFov(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    v.n[0] = t.node->getCameraFov();
    return true;
}
void setCameraFov(const TrackTarget& t, const TrackValue& v)
{
    if (t.node)
        t.node->setCameraFov(static_cast<float>(v.n[0]));
}

bool getNodeMaterial(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    v.text = &t.node->getMaterial();
    return true;
}
void setNodeMaterial(const TrackTarget& t, const TrackValue& v)
{
    if (t.node && v.text)
        t.node->setMaterial(*v.text);
}

bool getMesh(const TrackTarget& t, TrackValue& v)
{
    if (!t.node)
        return false;
    v.text = &t.node->getMesh();
    return true;
}
void setMesh(const TrackTarget& t, const TrackValue& v)
{
    if (t.node && v.text)
        t.node->setMesh(*v.text);
}

// Material parameters. A derived material holds its base's parameters under the same ids, so the
// hierarchy switch reaches the derived materials by id.

MaterialParameter* boundParameter(const TrackTarget& t)
{
    return t.material ? t.material->getParameterByID(t.parameter) : nullptr;
}

bool getMaterialValue(const TrackTarget& t, TrackValue& v)
{
    MaterialParameter* p = boundParameter(t);
    if (!p)
        return false;
    fromVec4(p->getValue(), v);
    return true;
}

// Writes the first count components of v into the parameter id of material (and, with hierarchy,
// of every material derived from it), keeping the other components.
void writeMaterial(Material* material, int id, const TrackValue& v, int count, bool hierarchy)
{
    MaterialParameter* p = material->getParameterByID(id);
    if (!p)
        return;
    vec4 value = p->getValue();
    for (int i = 0; i < count; ++i)
        value[i] = static_cast<float>(v.n[i]);
    p->setValue(value);
    if (!hierarchy)
        return;
    for (int c = 0; c < material->getNumChildren(); ++c)
        writeMaterial(material->getChild(c), id, v, count, true);
}

void setMaterialFloat(const TrackTarget& t, const TrackValue& v)
{
    if (t.material)
        writeMaterial(t.material, t.parameter, v, 1, t.hierarchy);
}
void setMaterialVec3(const TrackTarget& t, const TrackValue& v)
{
    if (t.material)
        writeMaterial(t.material, t.parameter, v, 3, t.hierarchy);
}
void setMaterialColor(const TrackTarget& t, const TrackValue& v)
{
    if (t.material)
        writeMaterial(t.material, t.parameter, v, 4, t.hierarchy);
}

// Global render settings of the world.

bool getExposure(const TrackTarget& t, TrackValue& v)
{
    if (!t.world)
        return false;
    v.n[0] = t.world->getExposure();
    return true;
}
void setExposure(const TrackTarget& t, const TrackValue& v)
{
    if (t.world)
        t.world->setExposure(v.n[0]);
}

bool getFogColor(const TrackTarget& t, TrackValue& v)
{
    if (!t.world)
        return false;
    fromVec4(t.world->getFogColor(), v);
    return true;
}
void setFogColor(const TrackTarget& t, const TrackValue& v)
{
    if (t.world)
        t.world->setFogColor(toVec4(v));
}

// Nested tracks play through their parameter; the registration only names them.
void setNothing(const TrackTarget&, const TrackValue&) {}

#define ANY_NODE NODE_DUMMY, OBJECT_MESH, LIGHT_POINT, LIGHT_SPOT, CAMERA, OBJECT_PREFAB
#define LIGHTS LIGHT_POINT, LIGHT_SPOT
#define CAMERAS CAMERA, EDITOR_CAMERA

using R = TrackReg;

// The table. Its order is the order GetAllRegs gives, and thus the order pickers list them in.
TrackReg g_regs[] = {
    {"Node.enabled", TRACK_PARAMETER_TOGGLE, R::BIND_NODE, {ANY_NODE}, R::MATERIALS_NONE, false, getEnabled, setEnabled},
    {"Node.position", TRACK_PARAMETER_VEC3, R::BIND_NODE, {ANY_NODE}, R::MATERIALS_NONE, false, getPosition, setPosition},
    {"Node.rotation", TRACK_PARAMETER_VEC3, R::BIND_NODE, {ANY_NODE}, R::MATERIALS_NONE, false, getRotation, setRotation},
    {"Node.scale", TRACK_PARAMETER_VEC3, R::BIND_NODE, {ANY_NODE}, R::MATERIALS_NONE, false, getScale, setScale},
    {"Node.world_position", TRACK_PARAMETER_DVEC3, R::BIND_NODE, {ANY_NODE}, R::MATERIALS_NONE, false, getWorldPosition,
     setWorldPosition},
    {"Light.color", TRACK_PARAMETER_COLOR, R::BIND_NODE, {LIGHTS}, R::MATERIALS_NONE, false, getLightColor, setLightColor},
    {"Light.intensity", TRACK_PARAMETER_FLOAT, R::BIND_NODE, {LIGHTS}, R::MATERIALS_NONE, false, getLightIntensity,
     setLightIntensity},
    {"Camera.fov", TRACK_PARAMETER_FLOAT, R::BIND_NODE, {CAMERAS}, R::MATERIALS_NONE, false, getCameraFov, setCameraFov},
    {"Object.material", TRACK_PARAMETER_STRING_MATERIAL, R::BIND_NODE, {OBJECT_MESH}, R::MATERIALS_ALL, false,
     getNodeMaterial, setNodeMaterial},
    {"Object.mesh", TRACK_PARAMETER_STRING_FILE, R::BIND_NODE, {OBJECT_MESH}, R::MATERIALS_NONE, false, getMesh, setMesh},
    {"Material.float", TRACK_PARAMETER_FLOAT, R::BIND_MATERIAL, {}, R::MATERIALS_WITH_KIND, true, getMaterialValue,
     setMaterialFloat},
    {"Material.vec3", TRACK_PARAMETER_VEC3, R::BIND_MATERIAL, {}, R::MATERIALS_WITH_KIND, true, getMaterialValue,
     setMaterialVec3},
    {"Material.color", TRACK_PARAMETER_COLOR, R::BIND_MATERIAL, {}, R::MATERIALS_WITH_KIND, true, getMaterialValue,
     setMaterialColor},
    {"Track.play", TRACK_PARAMETER_TRACK, R::BIND_TRACK, {}, R::MATERIALS_NONE, false, nullptr, setNothing},
    {"Render.exposure", TRACK_PARAMETER_DOUBLE, R::BIND_GLOBAL, {}, R::MATERIALS_NONE, false, getExposure, setExposure},
    {"Render.fog_color", TRACK_PARAMETER_COLOR, R::BIND_GLOBAL, {}, R::MATERIALS_NONE, false, getFogColor, setFogColor},
};

jVector<TrackReg*> makeList()
{
    jVector<TrackReg*> list;
    list.reserve(static_cast<int>(sizeof(g_regs) / sizeof(g_regs[0])));
    for (TrackReg& reg : g_regs)
        list.append(&reg);
    return list;
}

const jVector<TrackReg*> g_list = makeList();

} // namespace

const jVector<TrackReg*>& TrackRegTable::All()
{
    return g_list;
}

TrackReg* TrackRegTable::Find(const jString& name)
{
    for (TrackReg* reg : g_list) {
        if (reg->getName() == name)
            return reg;
    }
    return nullptr;
}
