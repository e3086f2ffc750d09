#pragma once

#include <vector>

#include "kit/jMath.h"

class TrackParameterFloat;
class TrackParameterVec3;

// The sampler data of one exported position, rotation or scale: key times and output values laid
// out as a glTF sampler of that interpolation wants them (for CUBICSPLINE, per key the in-tangent,
// the value and the out-tangent). Components without keys, or switched off, hold the node's own
// value, as they do when the track plays.
class GltfChannel {
public:
    enum Interpolation { STEP, LINEAR, CUBICSPLINE };

    // Builds the channel of p; rest is the node's own vector (Euler degrees for a rotation, which is
    // written as quaternions). p must have keys.
    GltfChannel(const TrackParameterVec3& p, const vec3& rest, bool rotation);

    Interpolation getInterpolation() const { return m_interpolation; }
    const std::vector<float>& getTimes() const { return m_times; }
    const std::vector<float>& getValues() const { return m_values; }
    // Numbers per value: 3, or 4 for a rotation.
    int getWidth() const { return m_rotation ? 4 : 3; }

private:
    // What glTF interpolation every segment of the keyed components is exactly, or -1 when they
    // differ (or their key times do).
    int exactKind() const;
    // Returns the kind of the segment that starts at key k of c, or -1 for one glTF has none of.
    static int segmentKind(const TrackParameterFloat& c, int k);
    void copyKeys();
    // Resamples to LINEAR keys: for curves with segments of different kinds, different key times
    // per component, or Bezier handles glTF cannot express, and for rotations that are not held.
    void resample();
    // Returns the evaluated vector at t (the rotation as a quaternion).
    std::vector<double> sample(float t) const;
    void append(const std::vector<double>& value);

    const TrackParameterFloat* m_keyed[3] = {};
    vec3 m_rest;
    bool m_rotation;
    Interpolation m_interpolation = LINEAR;
    std::vector<float> m_times;
    std::vector<float> m_values;
};
