#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"

class Material;

// One parameter of a material: a tag, a type code, a number of components (1 to 4) and a value
// held as a vec4 whose components past the count are 0. In a derived material a parameter is
// either inherited (it follows its base material's value) or the material's own (overridden).
class MaterialParameter {
public:
    // Type codes; they are stored in .world files and decide how tracks may animate a parameter.
    enum TYPE {
        VECTOR = 0,    // plain float vector, 1 to 4 components
        COLOR = 1,     // colour in [0, 1], 3 or 4 components
        SLIDER = 2,    // float within a range
        TOGGLE = 3,    // 0 or 1
        INTEGER = 4,   // whole number
        CHOICE = 5,    // index into a fixed list
        FLAGS = 6,     // bit mask
        ANGLE = 7,     // float in degrees
        SLOT = 8,      // texture slot index
        DIRECTION = 9, // unit vector
        COLOR_HDR = 10 // colour that may exceed 1
    };
    static constexpr int NUM_TYPES = 11;

    // Materials make their parameters (Material::addParameter).
    MaterialParameter(Material* material, const jString& tag, int type, int components, const vec4& value,
                      bool inherited);
    MaterialParameter(const MaterialParameter&) = delete;
    MaterialParameter& operator=(const MaterialParameter&) = delete;

    // Returns the lower-case name of a type code ("vector", "color", ...), or null when out of range.
    static const char* getTypeName(int type);

    // Returns the material that holds this parameter.
    Material* getMaterial() const { return m_material; }
    // Returns the tag tracks bind to; may be empty.
    const jString& getTag() const { return m_tag; }
    // Returns the type code (0 to 10, see TYPE).
    int getType() const { return m_type; }
    // Returns the number of meaningful components (1 to 4).
    int getNumComponents() const { return m_components; }
    // Returns the value; components past the count are 0.
    const vec4& getValue() const { return m_value; }
    // Sets the value (components past the count become 0). An inherited parameter becomes the
    // material's own; derived materials that inherit this parameter follow the new value.
    void setValue(const vec4& value);
    // Returns whether the value comes from the base material.
    bool isInherited() const { return m_inherited; }

private:
    friend class Material;
    // Takes a value handed down from the base material and passes it further down.
    void inherit_value(const vec4& value);
    vec4 masked(const vec4& value) const;

    Material* m_material;
    jString m_tag;
    int m_type;
    int m_components;
    vec4 m_value;
    bool m_inherited;
};
