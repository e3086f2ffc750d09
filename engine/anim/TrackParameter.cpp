#include "anim/TrackParameter.h"

#include "anim/Track.h"
#include "anim/TrackReader.h"
#include "io/Package.h"

void TrackParameter::setTypeName(const jString& name)
{
    m_type_name = name;
    m_reg = Track::GetRegByName(name);
    m_target_stale = true;
    changed();
}

void TrackParameter::setNodeID(int id)
{
    m_node_id = id;
    m_target_stale = true;
    changed();
}

void TrackParameter::setNodeName(const jString& name)
{
    m_node_name = name;
    m_target_stale = true;
    changed();
}

void TrackParameter::setInternalNode(int id, const jString& name)
{
    m_internal_id = id;
    m_internal_name = name;
    m_target_stale = true;
    changed();
}

bool TrackParameter::isForMaterial() const
{
    return m_reg ? m_reg->isForMaterial() : m_material_name.nempty();
}

void TrackParameter::setMaterial(const jString& name, const jString& tag)
{
    m_material_name = name;
    m_material_tag = tag;
    m_target_stale = true;
    changed();
}

void TrackParameter::setMaterialHierarchy(bool hierarchy)
{
    m_material_hierarchy = hierarchy;
    m_target.hierarchy = hierarchy;
    changed();
}

void TrackParameter::setEnabled(bool enabled)
{
    m_enabled = enabled;
    changed();
}

void TrackParameter::changed() const
{
    const TrackParameter* top = this;
    while (top->m_parent)
        top = top->m_parent;
    if (top->m_track)
        top->m_track->invalidate_playback();
}

void TrackParameter::setTrack(Track* track)
{
    m_track = track;
    m_target_stale = true;
}

void TrackParameter::setTarget(const TrackTarget& target, bool bound)
{
    m_target = target;
    m_target.hierarchy = m_material_hierarchy;
    m_bound = bound;
    m_target_stale = false;
    changed();
}

bool TrackParameter::readTarget(TrackValue& value) const
{
    return m_bound && m_reg && m_reg->get(m_target, value);
}

void TrackParameter::writeTarget(const TrackValue& value) const
{
    if (m_bound && m_reg)
        m_reg->set(m_target, value);
}

// Common fields, in the order they are written:
//   "kind", "type", "name", "display" (when set), "enabled", "shown",
//   "node": {"id", "name", "internal_id", "internal_name"} (when bound to a node),
//   "material": {"name", "tag", "hierarchy"} (when bound to a material).
void TrackParameter::read(TrackReader& reader, const Package* object)
{
    const char* type = "";
    int length = 0;
    if (const Package* node = reader.require(object, "type"))
        reader.readString(node, type, length, "type");
    setTypeName(jString(type, length));
    const Package* name = reader.optional(object, "name");
    setName(name ? jString(reader.optionalString(object, "name")) : getTypeName());
    m_display_name = reader.optionalString(object, "display");
    m_enabled = reader.optionalBool(object, "enabled", true);
    m_curve_shown = reader.optionalBool(object, "shown", false);
    if (const Package* node = reader.optional(object, "node")) {
        if (!node->isObject()) {
            reader.fail(node, "node must be an object");
        } else {
            m_node_id = reader.optionalInt(node, "id", -1);
            m_node_name = reader.optionalString(node, "name");
            m_internal_id = reader.optionalInt(node, "internal_id", -1);
            m_internal_name = reader.optionalString(node, "internal_name");
        }
    }
    if (const Package* material = reader.optional(object, "material")) {
        if (!material->isObject()) {
            reader.fail(material, "material must be an object");
        } else {
            m_material_name = reader.optionalString(material, "name");
            m_material_tag = reader.optionalString(material, "tag");
            m_material_hierarchy = reader.optionalBool(material, "hierarchy", false);
        }
    }
    m_target_stale = true;
    readBody(reader, object);
}

void TrackParameter::write(Package* object) const
{
    object->setObject();
    object->addInt("kind", getType());
    object->addString("type", m_type_name.c_str());
    object->addString("name", getName().c_str());
    if (m_display_name.nempty())
        object->addString("display", m_display_name.c_str());
    object->addBool("enabled", m_enabled);
    object->addBool("shown", m_curve_shown);
    if (m_node_id != -1 || m_node_name.nempty()) {
        Package* node = object->addObject("node");
        node->addInt("id", m_node_id);
        node->addString("name", m_node_name.c_str());
        node->addInt("internal_id", m_internal_id);
        node->addString("internal_name", m_internal_name.c_str());
    }
    if (m_material_name.nempty()) {
        Package* material = object->addObject("material");
        material->addString("name", m_material_name.c_str());
        material->addString("tag", m_material_tag.c_str());
        material->addBool("hierarchy", m_material_hierarchy);
    }
    writeBody(object);
}
