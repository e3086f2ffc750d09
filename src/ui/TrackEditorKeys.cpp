// The Track Editor's key commands: framing the curve view, making a key on every selected row,
// deleting, typing and shaping the selected keys, and dropping every view's selection. The selected keys are each parameter's key set; the commands walk the
// document's parameters in list order and each key set in its own order.
//
// Every command brings the engine in step itself, for the parameters it touched (applyKeys), before
// it posts its message: playback, a saved file and the key marks agree as soon as it returns.
#include "ui/TrackEditor.h"

#include <algorithm>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterVec3.h"
#include "data/AppData.h"
#include "data/FKeyDouble.h"
#include "data/FKeyFloat.h"
#include "data/FParameterColor.h"
#include "data/FParameterDouble.h"
#include "data/FParameterFloat.h"
#include "data/FParameterToggle.h"
#include "data/FTrack.h"
#include "kit/jAllocator.h"
#include "msg/MsgMngr.h"
#include "ui/TimeUnits.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRowPanel.h"

namespace {

constexpr float THIRD = 0.33333334f;
constexpr double THIRD_DOUBLE = 1.0 / 3.0;

const jVector<FParameterSingle*>& singles()
{
    return AppData::get()->getTrack()->getSingleParameters();
}

// Calls edit(key) for every marked key (edit says whether it changed the key) and writes every
// parameter whose keys changed to the engine, its keys sorted; returns whether any changed.
template <class Edit>
bool editMarkedKeys(Edit&& edit)
{
    bool any = false;
    for (FParameterSingle* parameter : singles()) {
        bool touched = false;
        for (FKey* key : parameter->getKeySet())
            touched = edit(key) || touched;
        if (!touched)
            continue;
        parameter->sortKeys();
        parameter->applyKeys();
        any = true;
    }
    return any;
}

// The live value of a scalar parameter: the bound property's current value; an axis takes its
// element of the vector's current value, any other part (a nested track's time) 0.
template <class Engine, class Vector, int VECTOR_KIND>
auto liveValue(const FParameterSingle* parameter)
{
    const FParameter* parent = parameter->getParent();
    if (!parent)
        return static_cast<const Engine*>(parameter->getTrackParameter())->getValue();
    using Value = typename Engine::Value;
    if (parent->getType() != VECTOR_KIND)
        return Value(0);
    return Value(static_cast<const Vector*>(parent->getTrackParameter())->getValue()[parameter->getComponentIndex()]);
}

// Makes a key at t holding the parameter's live value; null for the string kinds (and, logged, for a
// colour parameter without an engine parameter).
FKey* makeLiveKey(FParameterSingle* parameter, float t)
{
    switch (parameter->getType()) {
    case TRACK_PARAMETER_FLOAT:
        return static_cast<FParameterFloat*>(parameter)->createKey(
            t, liveValue<TrackParameterFloat, TrackParameterVec3, TRACK_PARAMETER_VEC3>(parameter), vec4(), TRACK_KEY_LINEAR);
    case TRACK_PARAMETER_DOUBLE:
        return static_cast<FParameterDouble*>(parameter)->createKey(
            t, liveValue<TrackParameterDouble, TrackParameterDVec3, TRACK_PARAMETER_DVEC3>(parameter), vec4(), TRACK_KEY_LINEAR);
    case TRACK_PARAMETER_COLOR: {
        const auto* engine = static_cast<const TrackParameterColor*>(parameter->getTrackParameter());
        return static_cast<FParameterColor*>(parameter)->createKey(t, engine ? engine->getValue() : vec4());
    }
    case TRACK_PARAMETER_TOGGLE:
        return static_cast<FParameterToggle*>(parameter)->createKey(
            t, static_cast<const TrackParameterToggle*>(parameter->getTrackParameter())->getValue());
    default:
        return nullptr;
    }
}

// Automatic tangents: a third of the way to each neighbour, averaged into one smooth direction; a
// first or last key has no pull from its missing side. Key is FKeyFloat or FKeyDouble.
template <class Key, class Third>
vec4 autoTangents(const FParameterSingle* parameter, int i, Third third)
{
    const auto* key = static_cast<const Key*>(parameter->getKey(i));
    float inTime = 0.0f, inValue = 0.0f, outTime = 0.0f, outValue = 0.0f;
    if (i > 0) {
        const auto* previous = static_cast<const Key*>(parameter->getKey(i - 1));
        inTime = (previous->getTime() - key->getTime()) * THIRD;
        inValue = float((previous->getValue() - key->getValue()) * third);
    }
    if (i + 1 < parameter->getNumKeys()) {
        const auto* next = static_cast<const Key*>(parameter->getKey(i + 1));
        outTime = (next->getTime() - key->getTime()) * THIRD;
        outValue = float((next->getValue() - key->getValue()) * third);
    }
    const float x = (inTime - outTime) / 2.0f;
    const float y = (inValue - outValue) / 2.0f;
    return vec4(x, y, -x, -y);
}

// Gives key i of a float or double parameter the interpolation kind; true when it is such a key.
template <class Key, class Third>
bool shapeKey(FParameterSingle* parameter, int i, int kind, Third third)
{
    auto* key = dynamic_cast<Key*>(parameter->getKey(i));
    if (!key)
        return false;
    key->setKeyType(kind);
    if (kind == TRACK_KEY_AUTO)
        key->setTangents(autoTangents<Key>(parameter, i, third));
    return true;
}

} // namespace

void TrackEditor::cb_arrange_x(const UIEventMouse*, UIElement*)
{
    m_curves->arrange(true, false);
}

void TrackEditor::cb_arrange_y(const UIEventMouse*, UIElement*)
{
    m_curves->arrange(false, true);
}

void TrackEditor::cb_arrange_xy(const UIEventMouse*, UIElement*)
{
    m_curves->arrange(true, true);
}

void TrackEditor::cb_make_key(const UIEventMouse*, UIElement*)
{
    const float t = TimeUnits::landing(AppData::get()->getTime());
    jVector<FKey*> made;
    const jSet<FParameterSingle*> selected = AppData::get()->getTrack()->getSelectedParameters();
    for (FParameterSingle* parameter : selected) {
        FKey* key = makeLiveKey(parameter, t);
        parameter->sortKeys();
        parameter->applyKeys();
        if (key) { // announced once the engine plays it, so the step it records holds the key
            made.append(key);
            MsgMngr::get()->notifyHelperPtr(TRACK_MSG_KEY_MADE, key);
        }
    }
    if (made.size() < 2)
        return;
    // Every new key is selected, not only the last one announced.
    AppData::get()->getTrack()->clearMarks();
    for (FKey* key : made)
        FTrack::mark(key);
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
}

void TrackEditor::cb_del_key(const UIEventMouse*, UIElement*)
{
    delete_key();
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_DELETED);
}

void TrackEditor::cb_key_const(const UIEventMouse*, UIElement*)
{
    setSelectedKeysType(TRACK_KEY_CONSTANT);
}

void TrackEditor::cb_key_linear(const UIEventMouse*, UIElement*)
{
    setSelectedKeysType(TRACK_KEY_LINEAR);
}

void TrackEditor::cb_key_smooth(const UIEventMouse*, UIElement*)
{
    setSelectedKeysType(TRACK_KEY_SMOOTH);
}

void TrackEditor::cb_key_break(const UIEventMouse*, UIElement*)
{
    setSelectedKeysType(TRACK_KEY_BREAK);
}

void TrackEditor::cb_key_auto(const UIEventMouse*, UIElement*)
{
    setSelectedKeysType(TRACK_KEY_AUTO);
}

void TrackEditor::clear_selected()
{
    m_rows->setSelected(jSet<UITrackRow*>());
    m_lines->setSelectedLines(jVector<UITrackLine*>());
    m_lines->setSelectedKeys(jVector<UITrackLineKey*>());
    m_curves->setSelectedCurves(jVector<UITrackCurve*>());
    m_curves->setSelectedKeys(jVector<UITrackCurveKey*>());
}

void TrackEditor::delete_key()
{
    for (FParameterSingle* parameter : singles()) {
        if (parameter->getKeySet().empty())
            continue;
        jVector<FKey*> doomed;
        for (FKey* key : parameter->getKeySet())
            doomed.append(key);
        for (FKey* key : doomed) {
            key->releaseUI();
            key->detach();
            jDelete(key, "src/ui/TrackEditor", __LINE__, "TrackEditor::delete_key");
        }
        parameter->getKeySet().clear();
        parameter->sortKeys();
        parameter->applyKeys();
    }
}

// A string key met in the walk stops the command where it stands and posts nothing, on purpose; the
// keys changed before it still reach the engine and the history.
void TrackEditor::setSelectedKeysType(TRACK_KEY_TYPE kind)
{
    jVector<FParameterSingle*> changed;
    bool stopped = false;
    for (int p = 0; p < singles().size() && !stopped; ++p) {
        FParameterSingle* parameter = singles()[p];
        const int type = parameter->getType();
        bool touched = false;
        for (int i = 0; i < parameter->getNumKeys() && !stopped; ++i) {
            if (!parameter->getKeySet().contains(parameter->getKey(i)))
                continue;
            stopped = type == TRACK_PARAMETER_STRING_FILE || type == TRACK_PARAMETER_STRING_MATERIAL;
            touched |= !stopped && (shapeKey<FKeyFloat>(parameter, i, kind, THIRD) ||
                                    shapeKey<FKeyDouble>(parameter, i, kind, THIRD_DOUBLE));
        }
        if (touched)
            changed.append(parameter);
    }
    for (FParameterSingle* parameter : changed)
        parameter->applyKeys();
    if (changed.empty())
        return;
    if (stopped)
        note_edit(TRACK_MSG_KEYS_CHANGED); // unannounced, but what reached the engine is a step
    else
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_CHANGED);
}

float TrackEditor::getSelectedKeysValue() const
{
    for (FParameterSingle* parameter : singles()) {
        for (FKey* key : parameter->getKeySet()) {
            if (const auto* f = dynamic_cast<const FKeyFloat*>(key))
                return f->getValue();
            if (const auto* d = dynamic_cast<const FKeyDouble*>(key))
                return float(d->getValue());
        }
    }
    return 0.0f;
}

void TrackEditor::setSelectedKeysValue(float value)
{
    const bool any = editMarkedKeys([value](FKey* key) {
        if (auto* f = dynamic_cast<FKeyFloat*>(key))
            f->setValue(value);
        else if (auto* d = dynamic_cast<FKeyDouble*>(key))
            d->setValue(double(value));
        else
            return false;
        return true;
    });
    if (any)
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_CHANGED);
}

float TrackEditor::getSelectedKeysTime() const
{
    for (FParameterSingle* parameter : singles())
        if (!parameter->getKeySet().empty())
            return (*parameter->getKeySet().begin())->getTime();
    return 0.0f;
}

// Each key keeps within the track's limits on its own: a nudge past a limit gathers keys there.
void TrackEditor::nudge_selected_keys(float dt)
{
    const Track* track = AppData::get()->getTrack()->getEngineTrack();
    const bool any = editMarkedKeys([dt, track](FKey* key) {
        key->setTime(std::clamp(key->getTime() + dt, track->getBeginTime(), track->getEndTime()));
        return true;
    });
    if (any)
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_MOVED);
}

// Every selected key of a parameter lands on the one time: nothing merges them.
void TrackEditor::setSelectedKeysTime(float t)
{
    const Track* track = AppData::get()->getTrack()->getEngineTrack();
    t = t < track->getBeginTime() ? track->getBeginTime() : (t > track->getEndTime() ? track->getEndTime() : t);
    const bool any = editMarkedKeys([t](FKey* key) {
        key->setTime(t);
        return true;
    });
    if (any)
        MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_MOVED);
}
