#pragma once

#include <functional>
#include <vector>

// Turns a curve that glTF cannot carry as it is into LINEAR keys: keys at the curve's own key times,
// a key just before each jump (so that a held value stays held), and between them as many keys as
// make the straight lines (or, for rotations, the spherical interpolation between quaternions) stay
// within a tolerance of the curve at the quarter points of every segment.
class GltfResampler {
public:
    using Sample = std::vector<double>;
    // Returns the curve's value at time t.
    using Curve = std::function<Sample(float t)>;
    // Returns how far the interpolation between a and b at u in [0, 1] is from exact.
    using Error = std::function<double(const Sample& a, const Sample& b, double u, const Sample& exact)>;

    GltfResampler(Curve curve, Error error, double tolerance);

    // Resamples the curve over the sorted key times (at least one) into times and values (one
    // sample per time).
    void run(const std::vector<float>& keyTimes, std::vector<float>& times, std::vector<Sample>& values) const;

private:
    // Appends the keys that make the segment from (a, fa) to (b, fb) stay within the tolerance,
    // ending with (b, fb).
    void refine(float a, const Sample& fa, float b, const Sample& fb, int depth, std::vector<float>& times,
                std::vector<Sample>& values) const;
    // Returns the largest error at the quarter points of a segment.
    double worst(float a, const Sample& fa, float b, const Sample& fb) const;

    Curve m_curve;
    Error m_error;
    double m_tolerance;
};
