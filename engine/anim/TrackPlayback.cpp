#include "anim/TrackPlayback.h"

#include <bit>

#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterVec3.h"
#include "kit/jPlatform.h"

namespace {

using FloatCurve = TrackParameterCurve<TrackKeyFloat>;
using FloatVector = TrackParameterVector<TrackParameterFloat, vec3>;

// How many outputs ahead play asks for the bound node: nodes are reached in no particular order,
// so their loads are started early enough to overlap with playing the outputs before them.
const int NODE_AHEAD = 8;

} // namespace

void TrackPlayback::build(const jVector<TrackParameter*>& params)
{
    m_valid = false;
    m_outputs.clear();
    m_player.clear();
    m_values.clear();
    m_held.clear();
    for (TrackParameter* p : params) {
        if (p->isEnabled() && p->isBound())
            add(p);
    }
    m_valid = true;
}

void TrackPlayback::add(TrackParameter* param)
{
    Output o;
    o.param = param;
    o.reg = param->getReg();
    o.target = param->getTarget();
    o.first = m_player.size();
    if (param->getType() == TRACK_PARAMETER_FLOAT) {
        auto* f = static_cast<FloatCurve*>(static_cast<TrackParameterFloat*>(param));
        if (f->getNumKeys() == 0)
            return; // nothing to play, nothing to keep
        o.kind = FLOAT;
        o.mask = 1;
        m_player.add(&f->getCurve());
        m_values.append(f->m_value);
    } else if (param->getType() == TRACK_PARAMETER_COLOR) {
        auto* c = static_cast<TrackParameterColor*>(param);
        if (c->getNumKeys() == 0)
            return;
        o.kind = COLOR;
        o.mask = (1u << TrackParameterColor::CHANNELS) - 1;
        for (int k = 0; k < TrackParameterColor::CHANNELS; ++k) {
            m_player.add(&c->getChannel(k));
            m_values.append(c->m_value[k]);
        }
    } else if (param->getType() == TRACK_PARAMETER_VEC3) {
        auto* v = static_cast<FloatVector*>(static_cast<TrackParameterVec3*>(param));
        o.kind = VEC3;
        for (int c = 0; c < 3; ++c) {
            const TrackParameterFloat& component = v->m_components[c];
            if (component.getNumKeys() > 0 && component.isEnabled())
                o.mask |= 1u << c;
        }
        if (o.mask == 0)
            return;
        for (int c = 0; c < 3; ++c) {
            if (o.mask & (1u << c)) {
                m_player.add(&v->m_components[c].getCurve());
                m_values.append(v->m_value[c]);
            } else {
                m_held.append(v->m_value[c]);
            }
        }
    }
    m_outputs.append(o);
}

void TrackPlayback::invalidate()
{
    if (!m_valid)
        return;
    m_valid = false;
    const float* held = m_held.data();
    for (const Output& o : m_outputs)
        flush(o, held);
}

// Hands output o's last values to its parameter; held is where o's held components start, and is
// moved past them.
void TrackPlayback::flush(const Output& o, const float*& held) const
{
    if (o.kind == FLOAT) {
        static_cast<FloatCurve*>(o.param)->m_value = m_values[o.first];
    } else if (o.kind == COLOR) {
        for (int k = 0; k < TrackParameterColor::CHANNELS; ++k)
            static_cast<TrackParameterColor*>(o.param)->m_value[k] = m_values[o.first + k];
    } else if (o.kind == VEC3) {
        const float* channel = &m_values[o.first];
        vec3& value = static_cast<FloatVector*>(o.param)->m_value;
        for (int c = 0; c < 3; ++c)
            value[c] = (o.mask & (1u << c)) ? *channel++ : *held++;
    }
}

void TrackPlayback::clear()
{
    m_valid = false;
    m_outputs.release();
    m_player.clear();
    m_values.release();
    m_held.release();
}

void TrackPlayback::play(float t)
{
    // The outputs whose channels are played first are written while the worker plays the rest.
    int ready = m_player.start(t, m_values.data());
    float* held = m_held.data();
    int next = play_outputs(0, t, ready, held);
    m_player.finish();
    play_outputs(next, t, m_player.size(), held);
}

// Plays the outputs from first on, in order, up to the first that reads a channel from ready on
// or (while channels are still being played) goes through its parameter's own apply, which may
// change the playback. Returns where it stopped. held is where the first output's held components
// start, and is moved past the outputs played.
int TrackPlayback::play_outputs(int first, float t, int ready, float*& held)
{
    const int count = m_outputs.size();
    const bool all = ready == m_player.size();
    for (int i = first; i < count; ++i) {
        const Output& o = m_outputs[i];
        if (!all && (o.kind == GENERIC || o.first + std::popcount(o.mask) > ready))
            return i;
        if (i + NODE_AHEAD < count) {
            const Output& ahead = m_outputs[i + NODE_AHEAD];
            J_PREFETCH(ahead.target.node);
            // Other kinds play through their parameter objects, which lie all over the heap.
            if (ahead.kind == GENERIC)
                J_PREFETCH(ahead.param);
        }
        switch (o.kind) {
        case FLOAT:
            play_channels(o, 1);
            break;
        case COLOR:
            play_channels(o, TrackParameterColor::CHANNELS);
            break;
        case VEC3:
            play_vector(o, held);
            break;
        default:
            o.param->apply(t);
            break;
        }
    }
    return count;
}

// Writes the count channels of o, in order, as the value's first count numbers.
void TrackPlayback::play_channels(const Output& o, int count)
{
    TrackValue out;
    for (int k = 0; k < count; ++k)
        out.n[k] = static_cast<double>(m_values[o.first + k]);
    o.reg->set(o.target, out);
}

// Plays vec3 output o: the played components from their channels, the others as
// TrackParameterVector::write fills them in. held is where o's held components (as last written)
// start, and is moved past them.
void TrackPlayback::play_vector(const Output& o, float*& held)
{
    const float* channel = &m_values[o.first];
    float* rest = held;
    float v[3];
    for (int c = 0; c < 3; ++c)
        v[c] = (o.mask & (1u << c)) ? *channel++ : *held++;
    FloatVector::write(o.reg, o.target, o.mask, v);
    for (int c = 0; c < 3; ++c) {
        if (!(o.mask & (1u << c)))
            *rest++ = v[c];
    }
}
