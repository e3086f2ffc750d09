#include "anim/TrackReg.h"

#include "scene/Material.h"
#include "scene/MaterialParameter.h"

TrackReg::TrackReg(const char* name, TRACK_PARAMETER_TYPE type, BINDING binding, std::initializer_list<int> nodeTypes,
                   MATERIAL_FILTER materials, bool displayName, TrackGetter getter, TrackSetter setter)
    : m_name(name), m_type(type), m_binding(binding), m_node_types{}, m_materials(materials),
      m_display_name(displayName), m_getter(getter), m_setter(setter)
{
    for (int nodeType : nodeTypes) {
        if (m_num_node_types < MAX_NODE_TYPES)
            m_node_types[m_num_node_types++] = nodeType;
    }
}

bool TrackReg::isAcceptNodeType(int nodeType) const
{
    for (int i = 0; i < m_num_node_types; ++i) {
        if (m_node_types[i] == nodeType)
            return true;
    }
    return false;
}

bool TrackReg::isAcceptMaterial(const Material* material) const
{
    if (!material || m_materials == MATERIALS_NONE)
        return false;
    if (m_materials == MATERIALS_ALL)
        return true;
    for (int i = 0; i < material->getNumParameters(); ++i) {
        const MaterialParameter* p = material->getParameter(i);
        if (MaterialParameterKind(p->getType(), p->getNumComponents()) == m_type)
            return true;
    }
    return false;
}

bool TrackReg::get(const TrackTarget& target, TrackValue& value) const
{
    return m_getter && m_getter(target, value);
}

int TrackReg::MaterialParameterKind(int typeCode, int components)
{
    switch (typeCode) {
    case MaterialParameter::VECTOR:
        return components == 1 ? TRACK_PARAMETER_FLOAT
                               : (components == 3 ? TRACK_PARAMETER_VEC3 : (components == 4 ? TRACK_PARAMETER_COLOR : -1));
    case MaterialParameter::COLOR:
    case MaterialParameter::COLOR_HDR:
        return components == 3 ? TRACK_PARAMETER_VEC3 : (components == 4 ? TRACK_PARAMETER_COLOR : -1);
    case MaterialParameter::SLIDER:
    case MaterialParameter::ANGLE:
        return TRACK_PARAMETER_FLOAT;
    case MaterialParameter::DIRECTION:
        return TRACK_PARAMETER_VEC3;
    default:
        return -1;
    }
}
