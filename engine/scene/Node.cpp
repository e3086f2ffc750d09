#include "scene/Node.h"

#include "scene/World.h"

Node::Node(int id, int type, const jString& name) : m_id(id), m_type(type), m_name(name) {}

Node::~Node()
{
    for (Node* node : m_internal)
        jDelete(node, "engine/scene/Node", __LINE__, "Node::release");
}

Node* Node::GetNode(int id)
{
    World* world = World::GetCurrent();
    if (!world)
        return nullptr;
    Node* node = world->getNodeByID(id);
    // Internal nodes share the world's id space but are reached through their prefab.
    return node && !node->m_parent ? node : nullptr;
}

Node* Node::GetNodeByName(const jString& name)
{
    World* world = World::GetCurrent();
    return world ? world->getNodeByName(name) : nullptr;
}

const char* Node::getTypeName() const { return NodeType::getName(m_type); }

dvec3 Node::getWorldPosition() const
{
    dvec3 local(m_position.x, m_position.y, m_position.z);
    return m_parent ? m_parent->getWorldPosition() + local : local;
}

void Node::setWorldPosition(const dvec3& position)
{
    dvec3 local = m_parent ? position - m_parent->getWorldPosition() : position;
    m_position = vec3(static_cast<float>(local.x), static_cast<float>(local.y), static_cast<float>(local.z));
}

Node* Node::getInternalNode(int index) const
{
    return index >= 0 && index < m_internal.size() ? m_internal[index] : nullptr;
}

Node* Node::getInternalNodeByID(int id) const
{
    for (Node* node : m_internal) {
        if (node->m_id == id)
            return node;
    }
    return nullptr;
}

void Node::adopt(Node* node)
{
    node->m_parent = this;
    m_internal.append(node);
}
