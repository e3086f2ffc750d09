#include "NodeFrame.h"

#include "scene/Node.h"

vec3 NodeFrame::rotate(const vec3& v, const vec3& degrees)
{
    return mat4::rotateEuler(degrees).transformPoint(v);
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
