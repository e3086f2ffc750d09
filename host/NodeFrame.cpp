#include "NodeFrame.h"

#include <cmath>

#include "scene/Node.h"

namespace {

constexpr float k_degrees = 3.14159265358979f / 180.0f;

} // namespace

vec3 NodeFrame::rotate(const vec3& v, const vec3& degrees)
{
    float cx = std::cos(degrees.x * k_degrees), sx = std::sin(degrees.x * k_degrees);
    float cy = std::cos(degrees.y * k_degrees), sy = std::sin(degrees.y * k_degrees);
    float cz = std::cos(degrees.z * k_degrees), sz = std::sin(degrees.z * k_degrees);
    vec3 r(v.x * cz - v.y * sz, v.x * sz + v.y * cz, v.z);
    r = vec3(r.x, r.y * cx - r.z * sx, r.y * sx + r.z * cx);
    return vec3(r.x * cy + r.z * sy, r.y, -r.x * sy + r.z * cy);
}

vec3 NodeFrame::direction(const Node* node, const vec3& local)
{
    return rotate(local, node->getRotation());
}

vec3 NodeFrame::toWorld(const Node* node, const vec3& local)
{
    const vec3& s = node->getScale();
    dvec3 origin = node->getWorldPosition();
    vec3 turned = rotate(vec3(local.x * s.x, local.y * s.y, local.z * s.z), node->getRotation());
    return vec3(static_cast<float>(origin.x), static_cast<float>(origin.y), static_cast<float>(origin.z)) + turned;
}
