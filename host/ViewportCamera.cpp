#include "ViewportCamera.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float k_degrees = 3.14159265358979f / 180.0f;

} // namespace

ViewportCamera::ViewportCamera() = default;

void ViewportCamera::orbit(float dx, float dy)
{
    m_yaw = std::fmod(m_yaw + dx, 360.0f);
    m_pitch = std::clamp(m_pitch + dy, -89.0f, 89.0f);
}

void ViewportCamera::pan(float dx, float dy, int viewHeight)
{
    vec3 right, up, forward;
    basis(right, up, forward);
    // One pixel covers this many world units at the target's depth.
    float unit = 2.0f * m_distance * std::tan(m_fov * 0.5f * k_degrees) / static_cast<float>(std::max(viewHeight, 1));
    m_target = m_target - right * (dx * unit) + up * (dy * unit);
}

void ViewportCamera::zoom(float notches)
{
    m_distance = std::clamp(m_distance * std::pow(0.85f, notches), 0.5f, 500.0f);
}

vec3 ViewportCamera::getEye() const
{
    float yaw = m_yaw * k_degrees, pitch = m_pitch * k_degrees;
    vec3 offset(std::cos(pitch) * std::sin(yaw), std::sin(pitch), std::cos(pitch) * std::cos(yaw));
    return m_target + offset * m_distance;
}

void ViewportCamera::basis(vec3& right, vec3& up, vec3& forward) const
{
    forward = normalize(m_target - getEye());
    right = normalize(cross(forward, vec3(0.0f, 1.0f, 0.0f)));
    up = cross(right, forward);
}

vec3 ViewportCamera::toCamera(const vec3& p) const
{
    vec3 right, up, forward;
    basis(right, up, forward);
    vec3 d = p - getEye();
    return vec3(dot(d, right), dot(d, up), dot(d, forward));
}

bool ViewportCamera::cameraToScreen(const vec3& c, int width, int height, float& sx, float& sy) const
{
    if (c.z < NEAR_PLANE)
        return false;
    float focal = 0.5f * static_cast<float>(height) / std::tan(m_fov * 0.5f * k_degrees);
    sx = 0.5f * static_cast<float>(width) + c.x / c.z * focal;
    sy = 0.5f * static_cast<float>(height) - c.y / c.z * focal;
    return true;
}

bool ViewportCamera::project(const vec3& p, int width, int height, float& sx, float& sy) const
{
    return cameraToScreen(toCamera(p), width, height, sx, sy);
}

bool ViewportCamera::clipToNear(vec3& a, vec3& b)
{
    if (a.z < NEAR_PLANE && b.z < NEAR_PLANE)
        return false;
    if (a.z >= NEAR_PLANE && b.z >= NEAR_PLANE)
        return true;
    vec3& behind = a.z < NEAR_PLANE ? a : b;
    const vec3& front = a.z < NEAR_PLANE ? b : a;
    float t = (NEAR_PLANE - front.z) / (behind.z - front.z);
    behind = front + (behind - front) * t;
    behind.z = NEAR_PLANE;
    return true;
}
