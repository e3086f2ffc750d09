#include "scene/MaterialParameter.h"

#include "scene/Material.h"

namespace {

constexpr const char* TYPE_NAMES[MaterialParameter::NUM_TYPES] = {
    "vector", "color", "slider", "toggle", "integer", "choice", "flags", "angle", "slot", "direction", "color_hdr",
};

} // namespace

MaterialParameter::MaterialParameter(Material* material, const jString& tag, int type, int components,
                                     const vec4& value, bool inherited)
    : m_material(material), m_tag(tag), m_type(type), m_components(components), m_inherited(inherited)
{
    m_value = masked(value);
}

const char* MaterialParameter::getTypeName(int type)
{
    return type >= 0 && type < NUM_TYPES ? TYPE_NAMES[type] : nullptr;
}

void MaterialParameter::setValue(const vec4& value)
{
    m_value = masked(value);
    m_inherited = false;
    m_material->pass_down(*this);
}

void MaterialParameter::inherit_value(const vec4& value)
{
    m_value = value;
    m_material->pass_down(*this);
}

vec4 MaterialParameter::masked(const vec4& value) const
{
    vec4 result;
    for (int i = 0; i < m_components && i < 4; ++i)
        result[i] = value[i];
    return result;
}
