#pragma once

#include "kit/jMath.h"

class Node;

// Where the parts of a node lie in the world: scaled, then turned by its rotation (see rotate), then
// moved to its absolute position (an internal node sits relative to its prefab).
class NodeFrame {
public:
    // Returns the world point of a point given in the node's own axes.
    static vec3 toWorld(const Node* node, const vec3& local);
    // Returns a direction given in the node's own axes turned by the node's rotation (not scaled).
    static vec3 direction(const Node* node, const vec3& local);
    // Turns v by Euler angles in degrees as the engine does (mat4::rotateEuler): about x, then y,
    // then z.
    static vec3 rotate(const vec3& v, const vec3& degrees);
};
