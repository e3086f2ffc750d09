#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"
#include "scene/NodeType.h"

class World;

// One object of a world: a mesh, a light, a camera, an empty (dummy) node or a prefab. Every node
// carries a transform and an enabled switch; lights, cameras and meshes carry their own properties
// (the other properties keep their defaults and are not saved, see NodeType::hasLight and friends).
// A prefab (OBJECT_PREFAB) owns internal nodes whose positions are relative to the prefab; they are
// found through the prefab, never in the world's own node list.
class Node {
public:
    // Worlds make nodes through World::addNode; a node made here belongs to whoever deletes it.
    Node(int id, int type, const jString& name);
    // Deletes the internal nodes.
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    // Returns the top-level node (or the editor camera) of the current world with this id; null
    // when there is no current world or no such node. Internal nodes are found through their prefab.
    static Node* GetNode(int id);
    // Returns the first top-level node (or the editor camera) of the current world with this name;
    // null when there is none.
    static Node* GetNodeByName(const jString& name);

    // Returns the id, unique in the node's world.
    int getID() const { return m_id; }
    // Returns the name; names may repeat.
    const jString& getName() const { return m_name; }
    // Renames the node.
    void setName(const jString& name) { m_name = name; }
    // Returns the node type (a NODE_TYPE).
    int getType() const { return m_type; }
    // Returns the type's name ("ObjectMesh", ...); see NodeType.
    const char* getTypeName() const;

    // Position relative to the parent prefab for internal nodes, else in the world; rotation in
    // Euler degrees; scale (1, 1, 1 at first). The setters take any value.
    const vec3& getPosition() const { return m_position; }
    void setPosition(const vec3& position) { m_position = position; }
    const vec3& getRotation() const { return m_rotation; }
    void setRotation(const vec3& degrees) { m_rotation = degrees; }
    const vec3& getScale() const { return m_scale; }
    void setScale(const vec3& scale) { m_scale = scale; }
    // Returns the absolute position: the parent's world position plus the local position.
    dvec3 getWorldPosition() const;
    // Moves the node so that its absolute position becomes position (the parent stays put).
    void setWorldPosition(const dvec3& position);

    // Whether the node takes part in the scene (drawn, lit); nodes start enabled.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    // Light colour (red, green, blue, alpha) and intensity; meaningful for LIGHT_POINT and LIGHT_SPOT.
    const vec4& getLightColor() const { return m_light_color; }
    void setLightColor(const vec4& color) { m_light_color = color; }
    float getLightIntensity() const { return m_light_intensity; }
    void setLightIntensity(float intensity) { m_light_intensity = intensity; }

    // Vertical field of view in degrees; meaningful for CAMERA and EDITOR_CAMERA.
    float getCameraFov() const { return m_camera_fov; }
    void setCameraFov(float degrees) { m_camera_fov = degrees; }

    // Material name and mesh file path (relative to the data folder); meaningful for OBJECT_MESH.
    const jString& getMaterial() const { return m_material; }
    void setMaterial(const jString& name) { m_material = name; }
    const jString& getMesh() const { return m_mesh; }
    void setMesh(const jString& path) { m_mesh = path; }

    // Internal nodes of a prefab, in their order; 0 and null for other nodes or a bad index.
    int getNumInternalNodes() const { return m_internal.size(); }
    Node* getInternalNode(int index) const;
    // Returns the direct internal node with this id, or null when there is none.
    Node* getInternalNodeByID(int id) const;
    // Returns the prefab that owns this internal node, or null for a top-level node.
    Node* getParent() const { return m_parent; }

private:
    friend class World;
    // Makes node an internal node of this prefab, which then owns it.
    void adopt(Node* node);

    int m_id;
    int m_type;
    jString m_name;
    vec3 m_position;
    vec3 m_rotation;
    vec3 m_scale{1.0f, 1.0f, 1.0f};
    bool m_enabled = true;
    vec4 m_light_color{1.0f, 1.0f, 1.0f, 1.0f};
    float m_light_intensity = 1.0f;
    float m_camera_fov = 60.0f;
    jString m_material;
    jString m_mesh;
    Node* m_parent = nullptr;
    jVector<Node*> m_internal;
};
