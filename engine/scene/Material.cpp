#include "scene/Material.h"

#include "kit/jLog.h"
#include "scene/MaterialParameter.h"

Material::Material(const jString& name, Material* parent) : m_name(name), m_parent(parent)
{
    if (!parent)
        return;
    parent->m_children.append(this);
    for (const MaterialParameter* p : parent->m_parameters) {
        m_parameters.append(jNew<MaterialParameter>("engine/scene/Material", __LINE__, "Material::Material", this,
                                                    p->getTag(), p->getType(), p->getNumComponents(),
                                                    p->getValue(), true));
    }
}

Material::~Material()
{
    if (m_parent)
        m_parent->m_children.removeValue(this);
    for (Material* child : m_children) {
        child->m_parent = nullptr;
        // Without a base there is nothing left to inherit from: the values become the child's own.
        for (MaterialParameter* p : child->m_parameters)
            p->m_inherited = false;
    }
    for (MaterialParameter* p : m_parameters)
        jDelete(p, "engine/scene/Material", __LINE__, "Material::release");
}

Material* Material::getChild(int index) const
{
    return index >= 0 && index < m_children.size() ? m_children[index] : nullptr;
}

MaterialParameter* Material::getParameter(int index) const
{
    return index >= 0 && index < m_parameters.size() ? m_parameters[index] : nullptr;
}

int Material::findParameterIDByTag(const jString& tag) const
{
    if (tag.empty())
        return -1;
    for (int i = 0; i < m_parameters.size(); ++i) {
        if (m_parameters[i]->getTag() == tag)
            return i;
    }
    return -1;
}

MaterialParameter* Material::getParameterByID(int id) const { return getParameter(id); }

MaterialParameter* Material::addParameter(const jString& tag, int type, int components, const vec4& value)
{
    if (type < 0 || type >= MaterialParameter::NUM_TYPES) {
        jLog::error("%s:material \"%s\" parameter \"%s\": type code %d is not 0 to 10", "Material::addParameter",
                    m_name.c_str(), tag.c_str(), type);
        return nullptr;
    }
    if (components < 1 || components > 4) {
        jLog::error("%s:material \"%s\" parameter \"%s\": %d components, expected 1 to 4", "Material::addParameter",
                    m_name.c_str(), tag.c_str(), components);
        return nullptr;
    }
    MaterialParameter* existing = getParameterByID(findParameterIDByTag(tag));
    if (existing && !existing->isInherited()) {
        jLog::error("%s:material \"%s\" already has a parameter \"%s\"", "Material::addParameter", m_name.c_str(),
                    tag.c_str());
        return nullptr;
    }
    if (existing) {
        if (existing->getType() != type || existing->getNumComponents() != components) {
            jLog::error("%s:material \"%s\" parameter \"%s\": an override must keep type %d with %d components",
                        "Material::addParameter", m_name.c_str(), tag.c_str(), existing->getType(),
                        existing->getNumComponents());
            return nullptr;
        }
        existing->setValue(value);
        return existing;
    }
    MaterialParameter* parameter = jNew<MaterialParameter>("engine/scene/Material", __LINE__, "Material::addParameter",
                                                           this, tag, type, components, value, false);
    m_parameters.append(parameter);
    for (Material* child : m_children)
        child->inherit_parameter(*parameter);
    return parameter;
}

void Material::pass_down(const MaterialParameter& parameter)
{
    for (Material* child : m_children) {
        MaterialParameter* own = child->getParameterByID(child->findParameterIDByTag(parameter.getTag()));
        if (own && own->isInherited())
            own->inherit_value(parameter.getValue());
    }
}

void Material::inherit_parameter(const MaterialParameter& parameter)
{
    // An untagged parameter cannot be matched to an override, so it is always inherited as new.
    MaterialParameter* own = getParameterByID(findParameterIDByTag(parameter.getTag()));
    if (own)
        return;
    MaterialParameter* copy = jNew<MaterialParameter>("engine/scene/Material", __LINE__, "Material::addParameter",
                                                      this, parameter.getTag(), parameter.getType(),
                                                      parameter.getNumComponents(), parameter.getValue(), true);
    m_parameters.append(copy);
    for (Material* child : m_children)
        child->inherit_parameter(*copy);
}
