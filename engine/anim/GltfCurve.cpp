#include "GltfCurve.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "GltfAccessor.h"

namespace {

std::string number(double v)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.9g", v);
    return text;
}

} // namespace

bool GltfCurve::read(const tinygltf::Model& model, const tinygltf::AnimationSampler& sampler, int width,
                     std::string& error)
{
    if (sampler.interpolation == "STEP")
        m_interpolation = STEP;
    else if (sampler.interpolation == "LINEAR" || sampler.interpolation.empty())
        m_interpolation = LINEAR;
    else if (sampler.interpolation == "CUBICSPLINE")
        m_interpolation = CUBICSPLINE;
    else {
        error = "interpolation \"" + sampler.interpolation + "\" is not STEP, LINEAR or CUBICSPLINE";
        return false;
    }
    m_width = width;
    std::vector<double> times;
    if (!GltfAccessor::read(model, sampler.input, 1, times, error) ||
        !GltfAccessor::read(model, sampler.output, width, m_values, error))
        return false;
    if (model.accessors[sampler.input].componentType != TINYGLTF_COMPONENT_TYPE_FLOAT) {
        error = "accessor " + std::to_string(sampler.input) + ": key times must be 32-bit floats";
        return false;
    }
    m_times.assign(times.begin(), times.end());
    size_t perKey = m_interpolation == CUBICSPLINE ? 3 : 1;
    if (m_values.size() != m_times.size() * perKey * static_cast<size_t>(width)) {
        error = std::to_string(m_times.size()) + " key times but " +
                std::to_string(m_values.size() / static_cast<size_t>(width)) + " output values" +
                (perKey == 3 ? " (a cubic spline needs three per key)" : "");
        return false;
    }
    if (!std::all_of(m_values.begin(), m_values.end(), [](double v) { return std::isfinite(v); })) {
        error = "an output value is not a finite number";
        return false;
    }
    return checkTimes(error);
}

bool GltfCurve::checkTimes(std::string& error) const
{
    if (m_times.empty()) {
        error = "the sampler has no keys";
        return false;
    }
    for (size_t k = 0; k < m_times.size(); ++k) {
        if (!std::isfinite(m_times[k]) || m_times[k] < 0.0f) {
            error = "key time " + std::to_string(k) + " (" + number(m_times[k]) + ") is negative or not finite";
            return false;
        }
        if (k > 0 && !(m_times[k] > m_times[k - 1])) {
            error = "key times are not increasing: key time " + std::to_string(k) + " (" + number(m_times[k]) +
                    ") does not come after " + number(m_times[k - 1]);
            return false;
        }
    }
    return true;
}

GltfRotation::Quat GltfCurve::rotationAt(double t) const
{
    int n = getNumKeys();
    if (t <= m_times[0])
        return GltfRotation::normalize(quat(0, 1));
    if (t >= m_times[n - 1])
        return GltfRotation::normalize(quat(n - 1, 1));
    int k = static_cast<int>(std::upper_bound(m_times.begin(), m_times.end(), t) - m_times.begin()) - 1;
    double d = static_cast<double>(m_times[k + 1]) - m_times[k];
    double u = (t - m_times[k]) / d;
    if (m_interpolation == STEP)
        return GltfRotation::normalize(quat(k, 1));
    if (m_interpolation == LINEAR)
        return GltfRotation::slerp(GltfRotation::normalize(quat(k, 1)), GltfRotation::normalize(quat(k + 1, 1)), u);
    double u2 = u * u, u3 = u2 * u;
    double h00 = 2 * u3 - 3 * u2 + 1, h10 = (u3 - 2 * u2 + u) * d, h01 = -2 * u3 + 3 * u2, h11 = (u3 - u2) * d;
    GltfRotation::Quat p0 = quat(k, 1), m0 = quat(k, 2), p1 = quat(k + 1, 1), m1 = quat(k + 1, 0);
    return GltfRotation::normalize({h00 * p0.x + h10 * m0.x + h01 * p1.x + h11 * m1.x,
                                    h00 * p0.y + h10 * m0.y + h01 * p1.y + h11 * m1.y,
                                    h00 * p0.z + h10 * m0.z + h01 * p1.z + h11 * m1.z,
                                    h00 * p0.w + h10 * m0.w + h01 * p1.w + h11 * m1.w});
}

double GltfCurve::element(int k, int part, int c) const
{
    if (m_interpolation != CUBICSPLINE)
        return part == 1 ? m_values[static_cast<size_t>(k * m_width + c)] : 0.0;
    return m_values[static_cast<size_t>((3 * k + part) * m_width + c)];
}

GltfRotation::Quat GltfCurve::quat(int k, int part) const
{
    return {element(k, part, 0), element(k, part, 1), element(k, part, 2), element(k, part, 3)};
}
