#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class MaterialParameter;

// A named set of parameters. Materials form a base -> derived hierarchy: a derived material holds a
// parameter for each of its base's parameters, in the base's order, inherited until the derived
// material overrides it (by addParameter with the same tag, or by setting its value); inherited
// parameters follow the base's values. Parameters of its own that the base lacks come after them.
// A parameter's id is its position in this list.
class Material {
public:
    // Makes a material; with a parent it starts with inherited copies of the parent's parameters
    // and becomes one of the parent's children.
    Material(const jString& name, Material* parent = nullptr);
    // Detaches the material from its parent and its children (they keep their parameter values,
    // now as their own) and deletes its parameters.
    ~Material();
    Material(const Material&) = delete;
    Material& operator=(const Material&) = delete;

    // Returns the name, unique in the engine's material manager.
    const jString& getName() const { return m_name; }
    // Returns the base material, or null.
    Material* getParent() const { return m_parent; }
    // Returns the number of derived materials; they are kept in the order they were made.
    int getNumChildren() const { return m_children.size(); }
    // Returns a derived material, or null for a bad index.
    Material* getChild(int index) const;

    // Returns the number of parameters, inherited ones included.
    int getNumParameters() const { return m_parameters.size(); }
    // Returns the parameter at index, or null for a bad index.
    MaterialParameter* getParameter(int index) const;
    // Returns the id of the parameter with this tag, or -1 (always -1 for the empty tag).
    int findParameterIDByTag(const jString& tag) const;
    // Returns the parameter with this id, or null.
    MaterialParameter* getParameterByID(int id) const;

    // Adds a parameter of this material's own, or overrides the inherited one with the same tag
    // (which must have the same type and component count); derived materials inherit it. Returns
    // the parameter, or null (and logs) when the type code or component count is out of range, the
    // tag is already this material's own, or an override changes the type or count.
    MaterialParameter* addParameter(const jString& tag, int type, int components, const vec4& value);

private:
    friend class MaterialParameter;
    // Hands a changed value down to the derived materials that inherit it.
    void pass_down(const MaterialParameter& parameter);
    // Gives derived materials an inherited copy of a new parameter.
    void inherit_parameter(const MaterialParameter& parameter);

    jString m_name;
    Material* m_parent = nullptr;
    jVector<Material*> m_children;
    jVector<MaterialParameter*> m_parameters;
};
