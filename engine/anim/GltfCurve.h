#pragma once

#include <string>
#include <vector>

#include "GltfRotation.h"
#include "TinyGltf.h"

// One glTF animation sampler, decoded and checked: strictly increasing key times from 0 on, and per
// key a value of width numbers (with an in and an out tangent for cubic splines), all finite.
class GltfCurve {
public:
    enum Interpolation { STEP, LINEAR, CUBICSPLINE };

    // Decodes sampler of model with width numbers per value. Returns false with the problem in
    // error ("2 key times but 3 values", "key time 4 (0.5) does not come after 0.5") when the
    // sampler is not a valid glTF sampler.
    bool read(const tinygltf::Model& model, const tinygltf::AnimationSampler& sampler, int width, std::string& error);

    Interpolation getInterpolation() const { return m_interpolation; }
    int getNumKeys() const { return static_cast<int>(m_times.size()); }
    float getTime(int k) const { return m_times[k]; }
    // Returns component c of key k's value, in-tangent and out-tangent (tangents are zero unless
    // the curve is a cubic spline).
    double getValue(int k, int c) const { return element(k, 1, c); }
    double getInTangent(int k, int c) const { return element(k, 0, c); }
    double getOutTangent(int k, int c) const { return element(k, 2, c); }

    // Returns the rotation at time t (a curve of width 4) by glTF's formulas: the first key's before
    // it, the last key's after it, spherical interpolation between LINEAR keys and a normalised
    // Hermite spline between CUBICSPLINE keys.
    GltfRotation::Quat rotationAt(double t) const;

private:
    // Returns component c of part (0 in-tangent, 1 value, 2 out-tangent) of key k.
    double element(int k, int part, int c) const;
    GltfRotation::Quat quat(int k, int part) const;
    bool checkTimes(std::string& error) const;

    Interpolation m_interpolation = LINEAR;
    int m_width = 1;
    std::vector<float> m_times;
    // Per key: the in-tangent, value and out-tangent for a cubic spline, the value alone otherwise.
    std::vector<double> m_values;
};
