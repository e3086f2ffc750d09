#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class FTrack;
class TrackParameter;
class UITrackCurve;
class UITrackLine;
class UITrackRow;

// The literal names a parameter kind uses for its log lines and allocation records, one table per
// kind, so the shared code logs "FParameterFloat::create" for a float and so on.
struct FParameterTags {
    const char* create;
    const char* createNew;
    const char* createKey;
    const char* release;
    const char* onDelete;
};

// The editor-side twin of one engine parameter. Top-level parameters belong to the document
// (FTrack); the components of a vector or nested-track parameter belong to the compound parameter
// that made them (their parent). A parameter writes every edit back into its engine parameter.
class FParameter {
public:
    FParameter() = default;
    virtual ~FParameter() = default;
    FParameter(const FParameter&) = delete;
    FParameter& operator=(const FParameter&) = delete;

    virtual FTrack* getOwner() const { return m_owner; }
    virtual void setOwner(FTrack* owner) { m_owner = owner; }
    // Which component (0, 1, 2 for x, y, z) a parameter of a compound is; -1 otherwise.
    virtual int getComponentIndex() const { return m_component; }
    virtual void setComponentIndex(int index) { m_component = index; }
    // When set, releasing a parameter that still has an owner also takes its engine parameter out
    // of the engine track and frees it. Components clear it: their engine parameter is the vector's.
    virtual bool isDetachOnRelease() const { return m_detach; }
    virtual void setDetachOnRelease(bool detach) { m_detach = detach; }
    // The kind (TRACK_PARAMETER_TYPE).
    virtual int getType() const = 0;

    // Binds to an existing engine parameter and builds the views' objects. Logs and returns false
    // when track or param is null or param is of another kind, when its type is not registered, or
    // when this parameter is bound already (a second create would orphan the first binding).
    virtual bool create(FTrack* track, TrackParameter* param, const jString& name) = 0;
    // On a fresh parameter: makes an engine parameter of this kind (added to the track's engine
    // track when addToTrack) and binds to it. Logs "<fn>:track" and returns false when track is
    // null; when binding fails, the new engine parameter is taken out again and freed.
    virtual bool createNew(FTrack* track, const jString& name, bool addToTrack);
    // Gives the row, the key line and the curve their colour.
    virtual void setColor(const vec4& color) = 0;
    // Orders the keys by time and has the key line and the curve re-sort their marks.
    virtual void sortKeys() = 0;
    // Frees every key and view object and, per the detach flag, the engine parameter.
    virtual void release() = 0;
    // The user deleted the parameter: takes the engine parameter out of the engine track and frees it.
    virtual void onDelete() = 0;
    // Rewrites the engine parameter's keys from the editor keys, in their order.
    virtual void applyKeys() = 0;
    // Asks the key line and the curve to draw again.
    virtual void markDirty() = 0;
    // Appends the row, the key line and the curve (those it has) to the three lists.
    virtual void collectUI(jVector<UITrackRow*>& rows, jVector<UITrackLine*>& lines,
                           jVector<UITrackCurve*>& curves) = 0;
    // Names the rows as reading the saved file back would, from the registration (or the material
    // tag) the engine parameter was bound to since it was made; a parameter made by its type name
    // ("Node.position") reads "position" from then on. Does nothing for an unregistered type.
    virtual void retitle() = 0;
    // The engine parameter whose enabled and curve switches the components' rows show and set,
    // when the components share their compound's; null when each keeps its own.
    virtual TrackParameter* getSharedSwitches() const { return nullptr; }

    // The scene node the parameter is bound to (a component asks its compound); -1 or empty when
    // there is none.
    virtual int getNodeIndex() const;
    virtual jString getNodeName() const;
    // The registration name of the parameter's type (Track::GetRegByName finds it).
    virtual jString getTypeName() const;
    // Whether the parameter animates a material parameter rather than a node property.
    virtual bool isForMaterial() const;
    // Whether a material binding applies to the material's whole hierarchy.
    virtual bool isMaterialHierarchy() const;
    virtual void setMaterialHierarchy(bool hierarchy);

    // The compound parameter that made this component; null for a top-level parameter.
    virtual FParameter* getParent() const { return m_parent; }
    virtual void setParent(FParameter* parent) { m_parent = parent; }
    // The parameter the engine track holds for this one: its compound for a component, itself for
    // a top-level parameter.
    FParameter* getTopParameter() { return getParent() ? getParent() : this; }
    const FParameter* getTopParameter() const { return getParent() ? getParent() : this; }

    // The engine parameter behind this one (the vector or nested track for a compound).
    virtual TrackParameter* getTrackParameter() const = 0;

protected:
    // The log and allocation names of the kind.
    virtual const FParameterTags& tags() const = 0;
    // Whether param is an engine parameter this kind can stand for; the base wants its own kind.
    virtual bool accepts(const TrackParameter* param) const;
    // True when track and param are set, param is accepted and this parameter is not bound yet;
    // otherwise logs "<create>:<check>" (or "<create>:already bound").
    bool check_create(FTrack* track, const TrackParameter* param, const char* check) const;
    // The row text of a named parameter: the registration's name (or the engine parameter's display
    // name when the registration asks for it), cut to the part after the last '.'. Returns false
    // when the type is not registered.
    static bool display_text(const TrackParameter* param, jString& text);
    // Records, for the step of the history being made, the state of the engine parameter this one
    // is part of; called right before writing a change into it.
    void touch() const;
    // Frees an engine parameter that is no longer in any track.
    void free_engine_parameter(TrackParameter* param, const char* tag) const;

private:
    FTrack* m_owner = nullptr;
    int m_component = -1;
    bool m_detach = true;
    FParameter* m_parent = nullptr;
};
