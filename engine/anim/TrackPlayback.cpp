#include "anim/TrackPlayback.h"

#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterVec3.h"

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
    for (TrackParameter* p : params) {
        if (p->isEnabled() && p->isBound())
            add(p);
    }
    m_values.clear();
    m_values.reserve(m_player.size());
    for (int i = 0; i < m_player.size(); ++i)
        m_values.append(0.0f);
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
        o.last[0] = f->m_value;
        m_player.add(&f->getCurve());
    } else if (param->getType() == TRACK_PARAMETER_VEC3) {
        auto* v = static_cast<FloatVector*>(static_cast<TrackParameterVec3*>(param));
        o.kind = VEC3;
        for (int c = 0; c < 3; ++c) {
            const TrackParameterFloat& component = v->m_components[c];
            o.last[c] = v->m_value[c];
            if (component.getNumKeys() == 0 || !component.isEnabled())
                continue;
            o.mask |= 1u << c;
            m_player.add(&component.getCurve());
        }
        if (o.mask == 0)
            return;
    }
    m_outputs.append(o);
}

void TrackPlayback::invalidate()
{
    if (!m_valid)
        return;
    m_valid = false;
    for (const Output& o : m_outputs)
        flush(o);
}

void TrackPlayback::flush(const Output& o) const
{
    if (o.kind == FLOAT)
        static_cast<FloatCurve*>(o.param)->m_value = o.last[0];
    else if (o.kind == VEC3)
        static_cast<FloatVector*>(o.param)->m_value = vec3(o.last[0], o.last[1], o.last[2]);
}

void TrackPlayback::clear()
{
    m_valid = false;
    m_outputs.release();
    m_player.clear();
    m_values.release();
}

void TrackPlayback::play(float t)
{
    m_player.play(t, m_values.data());
    const int count = m_outputs.size();
    for (int i = 0; i < count; ++i) {
        if (i + NODE_AHEAD < count)
            __builtin_prefetch(m_outputs[i + NODE_AHEAD].target.node);
        Output& o = m_outputs[i];
        switch (o.kind) {
        case FLOAT:
            play_float(o);
            break;
        case VEC3:
            play_vector(o);
            break;
        default:
            o.param->apply(t);
            break;
        }
    }
}

void TrackPlayback::play_float(Output& o)
{
    float v = m_values[o.first];
    o.last[0] = v;
    TrackValue out;
    out.n[0] = static_cast<double>(v);
    o.reg->set(o.target, out);
}

// As TrackParameterVector::apply: the played components from their curves, the others from the
// bound property (or, when it cannot be read, from the vector played last).
void TrackPlayback::play_vector(Output& o)
{
    const float* channel = &m_values[o.first];
    float v[3];
    for (int c = 0; c < 3; ++c) {
        if (o.mask & (1u << c))
            v[c] = *channel++;
    }
    if (o.mask != 7u) {
        TrackValue current;
        bool read = o.reg->get(o.target, current);
        for (int c = 0; c < 3; ++c) {
            if (!(o.mask & (1u << c)))
                v[c] = read ? static_cast<float>(current.n[c]) : o.last[c];
        }
    }
    TrackValue out;
    for (int c = 0; c < 3; ++c) {
        o.last[c] = v[c];
        out.n[c] = static_cast<double>(v[c]);
    }
    o.reg->set(o.target, out);
}
