#include "GltfChannel.h"

#include <algorithm>
#include <cmath>

#include "GltfResampler.h"
#include "GltfRotation.h"
#include "anim/GltfExport.h"
#include "anim/TrackParameterVec3.h"

namespace {

// How far a Bezier handle may sit from a third of its segment, as a share of the segment, and
// still be written as a cubic spline: the curves then differ by less than a float's rounding.
constexpr double k_third_slack = 1e-5;

double vectorError(const GltfResampler::Sample& a, const GltfResampler::Sample& b, double u,
                   const GltfResampler::Sample& exact)
{
    double largest = 0.0;
    for (size_t c = 0; c < exact.size(); ++c)
        largest = std::max(largest, std::fabs(a[c] + u * (b[c] - a[c]) - exact[c]));
    return largest;
}

double rotationError(const GltfResampler::Sample& a, const GltfResampler::Sample& b, double u,
                     const GltfResampler::Sample& exact)
{
    GltfRotation::Quat qa{a[0], a[1], a[2], a[3]}, qb{b[0], b[1], b[2], b[3]};
    return GltfRotation::angle(GltfRotation::slerp(qa, qb, u), {exact[0], exact[1], exact[2], exact[3]});
}

} // namespace

GltfChannel::GltfChannel(const TrackParameterVec3& p, const vec3& rest, bool rotation)
    : m_rest(rest), m_rotation(rotation)
{
    for (int c = 0; c < 3; ++c) {
        const TrackParameterFloat* component = p.getComponent(c);
        if (component->isEnabled() && component->getNumKeys() > 0)
            m_keyed[c] = component;
    }
    int kind = exactKind();
    // Euler angles interpolate differently from quaternions: only held rotations stay exact.
    if (kind == STEP || (kind >= 0 && !rotation)) {
        m_interpolation = static_cast<Interpolation>(kind);
        copyKeys();
    } else {
        resample();
    }
}

int GltfChannel::exactKind() const
{
    const TrackParameterFloat* first = *std::find_if(m_keyed, m_keyed + 3, [](auto* c) { return c != nullptr; });
    int kind = first->getNumKeys() > 1 ? segmentKind(*first, 0) : LINEAR;
    for (const TrackParameterFloat* c : m_keyed) {
        if (c && c->getNumKeys() != first->getNumKeys())
            return -1;
        for (int k = 0; c && k < c->getNumKeys(); ++k) {
            if (c->getKey(k).time != first->getKey(k).time ||
                (k + 1 < c->getNumKeys() && segmentKind(*c, k) != kind))
                return -1;
        }
    }
    return kind;
}

int GltfChannel::segmentKind(const TrackParameterFloat& c, int k)
{
    const TrackKeyFloat& a = c.getKey(k);
    const TrackKeyFloat& b = c.getKey(k + 1);
    if (a.type == TRACK_KEY_CONSTANT)
        return STEP;
    if (a.type == TRACK_KEY_LINEAR)
        return LINEAR;
    double third = (static_cast<double>(b.time) - a.time) / 3.0;
    bool even = std::fabs(a.tangents.z - third) <= k_third_slack * 3.0 * third &&
                std::fabs(-b.tangents.x - third) <= k_third_slack * 3.0 * third;
    return even ? CUBICSPLINE : -1;
}

void GltfChannel::copyKeys()
{
    const TrackParameterFloat* first = *std::find_if(m_keyed, m_keyed + 3, [](auto* c) { return c != nullptr; });
    for (int k = 0; k < first->getNumKeys(); ++k) {
        m_times.push_back(first->getKey(k).time);
        std::vector<double> in(3, 0.0), value(3, 0.0), out(3, 0.0);
        for (int c = 0; c < 3; ++c) {
            if (!m_keyed[c]) {
                value[c] = m_rest[c];
                continue;
            }
            const TrackKeyFloat& key = m_keyed[c]->getKey(k);
            value[c] = key.value;
            // glTF tangents are slopes per second; a handle a third along holds a third of it.
            in[c] = k > 0 && key.tangents.x != 0.0f ? key.tangents.y / key.tangents.x : 0.0;
            out[c] = k + 1 < first->getNumKeys() && key.tangents.z != 0.0f ? key.tangents.w / key.tangents.z : 0.0;
        }
        if (m_interpolation == CUBICSPLINE)
            append(in);
        append(m_rotation ? sample(m_times.back()) : value);
        if (m_interpolation == CUBICSPLINE)
            append(out);
    }
}

void GltfChannel::resample()
{
    m_interpolation = LINEAR;
    std::vector<float> keyTimes;
    for (const TrackParameterFloat* c : m_keyed) {
        for (int k = 0; c && k < c->getNumKeys(); ++k)
            keyTimes.push_back(c->getKey(k).time);
    }
    std::sort(keyTimes.begin(), keyTimes.end());
    keyTimes.erase(std::unique(keyTimes.begin(), keyTimes.end()), keyTimes.end());
    GltfResampler resampler([this](float t) { return sample(t); }, m_rotation ? rotationError : vectorError,
                            m_rotation ? GltfExport::ROTATION_TOLERANCE : GltfExport::RESAMPLE_TOLERANCE);
    std::vector<GltfResampler::Sample> values;
    resampler.run(keyTimes, m_times, values);
    for (const GltfResampler::Sample& v : values)
        append(v);
}

std::vector<double> GltfChannel::sample(float t) const
{
    dvec3 v(m_rest.x, m_rest.y, m_rest.z);
    for (int c = 0; c < 3; ++c) {
        bool found = false;
        float value = m_keyed[c] ? m_keyed[c]->getTrackValue(t, found) : 0.0f;
        if (found)
            v[c] = value;
    }
    if (!m_rotation)
        return {v.x, v.y, v.z};
    GltfRotation::Quat q = GltfRotation::fromEuler(v);
    return {q.x, q.y, q.z, q.w};
}

void GltfChannel::append(const std::vector<double>& value)
{
    size_t width = value.size();
    // Neighbouring quaternions on the same hemisphere read more easily; either sign is the same
    // rotation.
    double sign = 1.0;
    if (m_rotation && m_values.size() >= width) {
        double dot = 0.0;
        for (size_t c = 0; c < width; ++c)
            dot += m_values[m_values.size() - width + c] * value[c];
        sign = dot < 0.0 ? -1.0 : 1.0;
    }
    for (double v : value)
        m_values.push_back(static_cast<float>(sign * v));
}
