#include "scene/World.h"

#include <utility>

#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/Node.h"
#include "scene/WorldReader.h"
#include "scene/WorldWriter.h"

namespace {

World* g_current = nullptr;

} // namespace

World::World()
{
    m_editor_camera = jNew<Node>("engine/scene/World", __LINE__, "World::World", EDITOR_CAMERA_ID, EDITOR_CAMERA,
                                 jString(EDITOR_CAMERA_NAME));
    index_add(m_editor_camera);
}

World::~World()
{
    release();
    jDelete(m_editor_camera, "engine/scene/World", __LINE__, "World::release");
    m_index.release();
    if (g_current == this)
        g_current = nullptr;
}

World* World::GetCurrent() { return g_current; }

void World::SetCurrent(World* world) { g_current = world; }

void World::release()
{
    for (Node* node : m_nodes)
        jDelete(node, "engine/scene/World", __LINE__, "World::release");
    m_nodes.release();
    m_index.clear();
    index_add(m_editor_camera);
    m_next_id = 1;
    m_exposure = 1.0;
    m_fog_color = vec4(0.5f, 0.5f, 0.5f, 1.0f);
    MaterialManager* materials = Engine::get()->getMaterialManager();
    if (materials->getOwner() == this)
        materials->clear();
}

Node* World::getNode(int index) const { return index >= 0 && index < m_nodes.size() ? m_nodes[index] : nullptr; }

Node* World::getNodeByID(int id) const
{
    int at = index_position(id);
    return at < m_index.size() && m_index[at].id == id ? m_index[at].node : nullptr;
}

Node* World::getNodeByName(const jString& name) const
{
    for (Node* node : m_nodes) {
        if (node->getName() == name)
            return node;
    }
    return m_editor_camera->getName() == name ? m_editor_camera : nullptr;
}

Node* World::addNode(int type, const jString& name, int id, Node* prefab)
{
    if (!NodeType::isValid(type) || type == EDITOR_CAMERA) {
        jLog::error("%s:node \"%s\": node type %d cannot be added", "World::addNode", name.c_str(), type);
        return nullptr;
    }
    if (id == -1)
        id = m_next_id;
    if (id < 0 || id >= EDITOR_CAMERA_ID || getNodeByID(id)) {
        jLog::error("%s:node \"%s\": id %d is taken or out of range", "World::addNode", name.c_str(), id);
        return nullptr;
    }
    if (prefab && (prefab->getType() != OBJECT_PREFAB || getNodeByID(prefab->getID()) != prefab)) {
        jLog::error("%s:%s", "World::addNode", "prefab->getType() == OBJECT_PREFAB");
        return nullptr;
    }
    Node* node = jNew<Node>("engine/scene/World", __LINE__, "World::addNode", id, type, name);
    if (prefab)
        prefab->adopt(node);
    else
        m_nodes.append(node);
    index_add(node);
    if (id >= m_next_id)
        m_next_id = id + 1;
    return node;
}

bool World::load(const char* path)
{
    mjl document;
    if (!document.open(path))
        return false; // the reader has logged path, line, column and reason
    return loadDocument(document.getRoot(), path);
}

bool World::loadDocument(const Package* root, const char* name)
{
    if (!root) {
        jLog::error("%s:%s", "World::loadDocument", "root");
        return false;
    }
    // Everything is built aside and swapped in only when the whole document was read.
    World fresh;
    jVector<Material*> materials;
    WorldReader reader(name);
    if (!reader.read(root, fresh, materials)) {
        for (int i = materials.size() - 1; i >= 0; --i)
            jDelete(materials[i], "engine/scene/World", __LINE__, "World::load");
        return false;
    }
    take_content(fresh);
    Engine::get()->getMaterialManager()->replace(materials, this);
    return true;
}

bool World::save(const char* path) const
{
    Package root;
    WorldWriter::write(*this, *Engine::get()->getMaterialManager(), root);
    return mjl::save(path, &root);
}

void World::take_content(World& other)
{
    std::swap(m_nodes, other.m_nodes);
    std::swap(m_index, other.m_index);
    // Each world keeps its own editor camera, which sits at the same place in both indexes.
    m_index[index_position(EDITOR_CAMERA_ID)].node = m_editor_camera;
    other.m_index[other.index_position(EDITOR_CAMERA_ID)].node = other.m_editor_camera;
    std::swap(m_next_id, other.m_next_id);
    std::swap(m_exposure, other.m_exposure);
    std::swap(m_fog_color, other.m_fog_color);
}

int World::index_position(int id) const
{
    int low = 0;
    int high = m_index.size();
    while (low < high) {
        int middle = (low + high) / 2;
        if (m_index[middle].id < id)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void World::index_add(Node* node) { m_index.insert(index_position(node->getID()), IndexEntry{node->getID(), node}); }
