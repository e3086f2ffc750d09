#include "GltfResampler.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

// A segment is halved at most this often: 2^-24 of a key interval is below a float time's
// resolution anyway.
constexpr int k_max_depth = 24;

} // namespace

GltfResampler::GltfResampler(Curve curve, Error error, double tolerance)
    : m_curve(std::move(curve)), m_error(std::move(error)), m_tolerance(tolerance)
{
}

void GltfResampler::run(const std::vector<float>& keyTimes, std::vector<float>& times, std::vector<Sample>& values) const
{
    times.assign(1, keyTimes.front());
    values.assign(1, m_curve(keyTimes.front()));
    for (size_t k = 1; k < keyTimes.size(); ++k) {
        float b = keyTimes[k];
        Sample fb = m_curve(b);
        // Just before a key the curve may still hold the previous value: the jump is kept sharp.
        float before = std::nextafter(b, times.back());
        Sample held = m_curve(before);
        if (before > times.back() && m_error(held, held, 0.0, fb) > m_tolerance) {
            refine(times.back(), Sample(values.back()), before, held, 0, times, values);
        }
        refine(times.back(), Sample(values.back()), b, fb, 0, times, values);
    }
}

void GltfResampler::refine(float a, const Sample& fa, float b, const Sample& fb, int depth, std::vector<float>& times,
                           std::vector<Sample>& values) const
{
    float mid = static_cast<float>(0.5 * (static_cast<double>(a) + b));
    if (depth < k_max_depth && mid > a && mid < b && worst(a, fa, b, fb) > m_tolerance) {
        Sample fm = m_curve(mid);
        refine(a, fa, mid, fm, depth + 1, times, values);
        refine(mid, fm, b, fb, depth + 1, times, values);
        return;
    }
    times.push_back(b);
    values.push_back(fb);
}

double GltfResampler::worst(float a, const Sample& fa, float b, const Sample& fb) const
{
    double largest = 0.0;
    for (double u : {0.25, 0.5, 0.75}) {
        float t = static_cast<float>(a + u * (static_cast<double>(b) - a));
        largest = std::max(largest, m_error(fa, fb, (static_cast<double>(t) - a) / (static_cast<double>(b) - a), m_curve(t)));
    }
    return largest;
}
