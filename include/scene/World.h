#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class Node;
class Package;

// A scene: its top-level nodes (prefabs own their internal nodes), the editor camera and the global
// render settings. Loading a world also installs its materials in the engine's material manager
// (Engine::get()->getMaterialManager()); they stay there until another world installs its own or
// this world is released. Node ids are unique across the whole world, internal nodes included.
class World {
public:
    // The editor camera's name and id; it exists in every world, is never in the node list and
    // never saved.
    static constexpr const char* EDITOR_CAMERA_NAME = "__EDITOR_CAMERA__";
    static constexpr int EDITOR_CAMERA_ID = 0x7fffffff;
    // The .world format version this build reads and writes.
    static constexpr int FORMAT_VERSION = 1;

    // Makes an empty world holding only the editor camera.
    World();
    // Releases the world; it stops being the current world if it was.
    ~World();
    World(const World&) = delete;
    World& operator=(const World&) = delete;

    // Returns the world that Node::GetNode and Node::GetNodeByName search, or null.
    static World* GetCurrent();
    // Makes world (may be null) the current world.
    static void SetCurrent(World* world);

    // Deletes every node but the editor camera, resets the render settings, and clears the engine's
    // materials when this world installed them.
    void release();

    // Returns the number of top-level nodes (the editor camera is not among them).
    int getNumNodes() const { return m_nodes.size(); }
    // Returns the top-level node at index, in file or creation order; null for a bad index.
    Node* getNode(int index) const;
    // Returns the node with this id (top-level, internal, or the editor camera), or null.
    Node* getNodeByID(int id) const;
    // Returns the first top-level node (or the editor camera) with this name, or null. Internal
    // node names repeat across prefab instances, so they are searched through their prefab.
    Node* getNodeByName(const jString& name) const;
    // Returns the editor camera.
    Node* getEditorCamera() const { return m_editor_camera; }

    // Makes a node of type (a NODE_TYPE) with the name and id (-1 takes the next free id) and adds
    // it to the node list, or to prefab's internal nodes when prefab is given. Returns null and logs
    // when the type is unknown or EDITOR_CAMERA, the id is taken or out of range, or prefab is not
    // an OBJECT_PREFAB node of this world.
    Node* addNode(int type, const jString& name, int id = -1, Node* prefab = nullptr);

    // Global render settings: exposure multiplier (1 at first) and fog colour; setters take any value.
    double getExposure() const { return m_exposure; }
    void setExposure(double exposure) { m_exposure = exposure; }
    const vec4& getFogColor() const { return m_fog_color; }
    void setFogColor(const vec4& color) { m_fog_color = color; }

    // Replaces this world and the engine's materials with the content of a .world file (pointers
    // to the old nodes and materials become invalid). Returns false and logs
    // "path:line:column: reason" (or the missing field) on any error; the world and the materials
    // are then left as they were.
    bool load(const char* path);
    // Does what load does with a document already parsed; name stands for the path in messages.
    bool loadDocument(const Package* root, const char* name);
    // Writes the nodes, the engine's materials and the render settings to a .world file,
    // atomically. Returns false and logs the reason; the file on disk is then unchanged.
    bool save(const char* path) const;

private:
    // Returns the position in m_index where id is or would go.
    int index_position(int id) const;
    void index_add(Node* node);
    // Swaps nodes and render settings with other; each world keeps its editor camera.
    void take_content(World& other);

    Node* m_editor_camera = nullptr;
    jVector<Node*> m_nodes;
    // Every node of the world sorted by id, for lookups by id; the id is kept beside the pointer so
    // that a search touches only the index.
    struct IndexEntry {
        int id;
        Node* node;
    };
    jVector<IndexEntry> m_index;
    int m_next_id = 1;
    double m_exposure = 1.0;
    vec4 m_fog_color{0.5f, 0.5f, 0.5f, 1.0f};
};
