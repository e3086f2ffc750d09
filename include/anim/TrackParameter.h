#pragma once

#include "anim/TrackReg.h"
#include "anim/TrackTypes.h"
#include "kit/jString.h"

class Package;
class Track;
class TrackReader;

// One animated property of a track: its kind, the registration it is played through (its type
// name), the node or material it is bound to, its editor switches, and its keys (held by the
// kinds). After changing keys, call update so that derived data (smooth tangents) follows.
class TrackParameter {
public:
    TrackParameter() = default;
    virtual ~TrackParameter() = default;
    TrackParameter(const TrackParameter&) = delete;
    TrackParameter& operator=(const TrackParameter&) = delete;

    // Returns the kind (TRACK_PARAMETER_TYPE).
    virtual TRACK_PARAMETER_TYPE getType() const = 0;

    // The name the editor gave the parameter.
    virtual const jString& getName() const { return m_name; }
    virtual void setName(const jString& name) { m_name = name; }
    // The registration name under which Track::GetRegByName finds how to play the parameter.
    const jString& getTypeName() const { return m_type_name; }
    // Stores the type name and looks its registration up (null when unregistered).
    void setTypeName(const jString& name);
    // Returns the registration of the type name, or null.
    const TrackReg* getReg() const { return m_reg; }
    // The name shown instead of the registration name when the registration asks for it.
    const jString& getDisplayName() const { return m_display_name; }
    void setDisplayName(const jString& name) { m_display_name = name; }

    // Whether Track::set plays the parameter.
    virtual bool isEnabled() const { return m_enabled; }
    virtual void setEnabled(bool enabled);
    // Whether the editor shows the parameter's curve.
    virtual bool isCurveShown() const { return m_curve_shown; }
    virtual void setCurveShown(bool shown) { m_curve_shown = shown; }

    // Node binding: the node's id (-1 when unbound) and name, and the prefab-internal node's id
    // (-1 for none) and name.
    int getNodeID() const { return m_node_id; }
    void setNodeID(int id);
    const jString& getNodeName() const { return m_node_name; }
    void setNodeName(const jString& name);
    int getInternalNodeID() const { return m_internal_id; }
    const jString& getInternalNodeName() const { return m_internal_name; }
    void setInternalNode(int id, const jString& name);

    // Returns whether the parameter animates a material parameter (its registration says so, or,
    // unregistered, it carries a material binding).
    bool isForMaterial() const;
    // Material binding: the material's name and the bound parameter's tag.
    const jString& getMaterialName() const { return m_material_name; }
    const jString& getMaterialTag() const { return m_material_tag; }
    void setMaterial(const jString& name, const jString& tag);
    // Whether a material binding also drives every material derived from the bound one.
    bool isMaterialHierarchy() const { return m_material_hierarchy; }
    void setMaterialHierarchy(bool hierarchy);

    // Drops the keys; the name, binding and switches stay.
    virtual void release() = 0;
    // Brings derived key data up to date after the keys changed.
    virtual void update() {}
    // Returns how many keys the parameter holds (a compound parameter: its components together).
    virtual int getNumKeys() const = 0;

    // Reads a parameter object of a .anim file: the common fields, then the kind's own; problems go
    // to reader and leave the parameter partly read.
    virtual void read(TrackReader& reader, const Package* object);
    // Writes the parameter into an empty object: the common fields, then the kind's own.
    virtual void write(Package* object) const;
    // Reads and writes the kind's own fields (keys, components).
    virtual void readBody(TrackReader& reader, const Package* object) = 0;
    virtual void writeBody(Package* object) const = 0;

    // Plays the parameter at t on its resolved target (Track::set calls it for enabled, bound
    // parameters).
    virtual void apply(float t) = 0;

    // The track that holds the parameter (null while it is held by none).
    Track* getTrack() const { return m_track; }
    void setTrack(Track* track);
    // The resolved target; valid while isBound() is true. Track resolves it before playing.
    const TrackTarget& getTarget() const { return m_target; }
    bool isBound() const { return m_bound; }
    // Stores a resolved target (bound true) or forgets it (bound false).
    void setTarget(const TrackTarget& target, bool bound);
    // Returns whether the target must be resolved again before playing (the binding changed).
    bool isTargetStale() const { return m_target_stale; }

protected:
    // Tells the track that plays this parameter (directly, or as a component of the parameter that
    // adopted it) that its keys, switches or binding changed, so that playback is rebuilt.
    void changed() const;
    // Makes component part of this parameter: its changes reach this parameter's track.
    void adopt(TrackParameter& component) { component.m_parent = this; }

    // Reads the bound property's current value; false when unbound or unreadable.
    bool readTarget(TrackValue& value) const;
    // Writes a value through the registration to the bound target.
    void writeTarget(const TrackValue& value) const;

private:
    const TrackReg* m_reg = nullptr;
    bool m_enabled = true;
    bool m_bound = false;
    bool m_target_stale = true;
    bool m_curve_shown = false;
    TrackTarget m_target;
    jString m_name;
    jString m_type_name;
    jString m_display_name;
    int m_node_id = -1;
    jString m_node_name;
    int m_internal_id = -1;
    jString m_internal_name;
    jString m_material_name;
    jString m_material_tag;
    bool m_material_hierarchy = false;
    Track* m_track = nullptr;
    // The parameter that holds this one as a component (null for a parameter of its own).
    const TrackParameter* m_parent = nullptr;
};
