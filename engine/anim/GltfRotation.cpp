#include "GltfRotation.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double k_pi = 3.14159265358979323846;
constexpr double k_to_radians = k_pi / 180.0;
constexpr double k_to_degrees = 180.0 / k_pi;
// Below this cosine of Y the X and Z axes line up and only their sum (or difference) is defined.
constexpr double k_gimbal = 1e-7;
// Above this cosine of the half angle between two rotations slerp divides by almost nothing.
constexpr double k_nearly_equal = 0.9999995;

GltfRotation::Quat multiply(const GltfRotation::Quat& a, const GltfRotation::Quat& b)
{
    return {a.w * b.x + a.x * b.w + a.y * b.z - a.z * b.y, a.w * b.y - a.x * b.z + a.y * b.w + a.z * b.x,
            a.w * b.z + a.x * b.y - a.y * b.x + a.z * b.w, a.w * b.w - a.x * b.x - a.y * b.y - a.z * b.z};
}

} // namespace

GltfRotation::Quat GltfRotation::fromEuler(const dvec3& degrees)
{
    double hx = degrees.x * k_to_radians * 0.5, hy = degrees.y * k_to_radians * 0.5, hz = degrees.z * k_to_radians * 0.5;
    Quat qx{std::sin(hx), 0.0, 0.0, std::cos(hx)};
    Quat qy{0.0, std::sin(hy), 0.0, std::cos(hy)};
    Quat qz{0.0, 0.0, std::sin(hz), std::cos(hz)};
    return multiply(multiply(qz, qy), qx);
}

dvec3 GltfRotation::toEuler(const Quat& q, const dvec3& previous)
{
    Quat n = normalize(q);
    // The matrix entries the angles are read from (R = Rz Ry Rx).
    double r00 = 1.0 - 2.0 * (n.y * n.y + n.z * n.z), r10 = 2.0 * (n.x * n.y + n.w * n.z);
    double r20 = 2.0 * (n.x * n.z - n.w * n.y), r21 = 2.0 * (n.y * n.z + n.w * n.x);
    double r22 = 1.0 - 2.0 * (n.x * n.x + n.y * n.y);
    double r01 = 2.0 * (n.x * n.y - n.w * n.z), r11 = 1.0 - 2.0 * (n.x * n.x + n.z * n.z);
    double y = std::asin(std::clamp(-r20, -1.0, 1.0)) * k_to_degrees;
    if (std::sqrt(r00 * r00 + r10 * r10) < k_gimbal) {
        double x = previous.x;
        // At Y = +90 the matrix fixes X - Z, at Y = -90 it fixes X + Z.
        double z = r20 < 0.0 ? x - std::atan2(r01, r11) * k_to_degrees : std::atan2(-r01, r11) * k_to_degrees - x;
        return dvec3(x, near(y, previous.y), near(z, previous.z));
    }
    dvec3 a(std::atan2(r21, r22) * k_to_degrees, y, std::atan2(r10, r00) * k_to_degrees);
    dvec3 b(a.x + 180.0, 180.0 - a.y, a.z + 180.0);
    for (dvec3* c : {&a, &b}) {
        for (int i = 0; i < 3; ++i)
            (*c)[i] = near((*c)[i], previous[i]);
    }
    return distance(a, previous) <= distance(b, previous) ? a : b;
}

GltfRotation::Quat GltfRotation::slerp(const Quat& a, const Quat& b, double u)
{
    double d = dot(a, b);
    double sign = d < 0.0 ? -1.0 : 1.0;
    d = std::fabs(d);
    double wa = 1.0 - u, wb = u;
    if (d < k_nearly_equal) {
        double angle = std::acos(d);
        double s = std::sin(angle);
        wa = std::sin((1.0 - u) * angle) / s;
        wb = std::sin(u * angle) / s;
    }
    wb *= sign;
    Quat r{wa * a.x + wb * b.x, wa * a.y + wb * b.y, wa * a.z + wb * b.z, wa * a.w + wb * b.w};
    return d < k_nearly_equal ? r : normalize(r);
}

GltfRotation::Quat GltfRotation::normalize(const Quat& q)
{
    double n = std::sqrt(dot(q, q));
    if (n == 0.0)
        return Quat{};
    return {q.x / n, q.y / n, q.z / n, q.w / n};
}

double GltfRotation::angle(const Quat& a, const Quat& b)
{
    double d = std::min(std::fabs(dot(normalize(a), normalize(b))), 1.0);
    return 2.0 * std::acos(d) * k_to_degrees;
}

double GltfRotation::near(double angle, double reference)
{
    return angle + 360.0 * std::round((reference - angle) / 360.0);
}

double GltfRotation::distance(const dvec3& a, const dvec3& b)
{
    return std::fabs(a.x - b.x) + std::fabs(a.y - b.y) + std::fabs(a.z - b.z);
}
