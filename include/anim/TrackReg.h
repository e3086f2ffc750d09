#pragma once

#include <initializer_list>

#include "anim/TrackTypes.h"
#include "kit/jString.h"

class World;
class Node;
class Material;

// What a bound parameter acts on: the world (global settings), a node, or a material parameter
// (by id) together with the switch that extends it to every material derived from that one.
struct TrackTarget {
    World* world = nullptr;
    Node* node = nullptr;
    Material* material = nullptr;
    int parameter = -1;
    bool hierarchy = false;
};

// A value on its way between a parameter and its target: toggles, floats and doubles use n[0],
// colours n[0..3] (red, green, blue, alpha), vectors n[0..2]; strings use text.
struct TrackValue {
    double n[4] = {0.0, 0.0, 0.0, 0.0};
    const jString* text = nullptr;
};

using TrackGetter = bool (*)(const TrackTarget& target, TrackValue& value);
using TrackSetter = void (*)(const TrackTarget& target, const TrackValue& value);

// One registered parameter type: the dotted name under which tracks store it, its parameter kind,
// what it binds to, which node types and materials it accepts, and how the engine reads and writes
// the animated property.
class TrackReg {
public:
    enum BINDING {
        BIND_GLOBAL = 0,   // a setting of the world, always bound
        BIND_NODE = 1,     // a property of a scene node
        BIND_MATERIAL = 2, // a parameter of a material
        BIND_TRACK = 3,    // a nested track, played through the parameter itself
    };
    // Which material parameters a material-bound registration animates, by the kind they map to.
    enum MATERIAL_FILTER { MATERIALS_NONE = 0, MATERIALS_ALL, MATERIALS_WITH_KIND };

    TrackReg(const char* name, TRACK_PARAMETER_TYPE type, BINDING binding, std::initializer_list<int> nodeTypes,
             MATERIAL_FILTER materials, bool displayName, TrackGetter getter, TrackSetter setter);
    virtual ~TrackReg() = default;
    TrackReg(const TrackReg&) = delete;
    TrackReg& operator=(const TrackReg&) = delete;

    // Returns the registration name ("Node.position").
    const jString& getName() const { return m_name; }
    // Returns whether rows show the parameter's own display name instead of the registration name.
    virtual bool isShowDisplayName() const { return m_display_name; }
    // Returns the kind of parameter this registration animates.
    TRACK_PARAMETER_TYPE getType() const { return m_type; }
    BINDING getBinding() const { return m_binding; }

    // Returns whether parameters of this registration bind to a scene node.
    virtual bool isForNode() const { return m_binding == BIND_NODE; }
    // Returns whether parameters of this registration bind to a material parameter.
    virtual bool isForMaterial() const { return m_binding == BIND_MATERIAL; }
    // Returns whether a node of this NODE_TYPE can be bound.
    virtual bool isAcceptNodeType(int nodeType) const;
    // Returns whether this material can be bound (or, for a material-name string, chosen); false
    // for null.
    virtual bool isAcceptMaterial(const Material* material) const;

    // Reads the animated property's current value; false when the target lacks what it needs.
    bool get(const TrackTarget& target, TrackValue& value) const;
    // Writes a value to the target; does nothing when the target lacks what it needs.
    void set(const TrackTarget& target, const TrackValue& value) const { m_setter(target, value); }

    // Returns the parameter kind a material parameter maps to (float 1, colour 3, vec3 4) from its
    // type code and component count, or -1 when no track parameter can animate it.
    static int MaterialParameterKind(int typeCode, int components);

private:
    static constexpr int MAX_NODE_TYPES = 8;

    jString m_name;
    TRACK_PARAMETER_TYPE m_type;
    BINDING m_binding;
    int m_node_types[MAX_NODE_TYPES];
    int m_num_node_types = 0;
    MATERIAL_FILTER m_materials;
    bool m_display_name;
    TrackGetter m_getter;
    TrackSetter m_setter;
};
