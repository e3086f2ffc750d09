// The Track Editor's node and material binding: the pickers that add a parameter bound to a node or
// a material, re-binding a parameter to another node, and the node-info grid's view of the
// selected row's parameter.
//
// A component row (an axis of a vector) reaches its vector through FParameter::getParent(), and
// every parameter, compound or not, reaches its engine parameter through getTrackParameter(): the
// engine vector is therefore getParent()->getTrackParameter() of any of its axes.
#include "ui/TrackEditor.h"

#include <string>
#include <utility>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "data/AppData.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "editor/Locale.h"
#include "editor/MsgBox.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialManager.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/NodeType.h"
#include "scene/World.h"
#include "ui/MaterialParamSelectPanel.h"
#include "ui/MaterialSelectPanel.h"
#include "ui/PickerDialog.h"
#include "ui/TrackNodeSelectPanel.h"
#include "ui/TrackSubNodeSelectPanel.h"
#include "ui/UITrackRow.h"
#include "ui/UITrackRowPanel.h"

namespace {

// Shows a new Panel, made from root and args, modally under the title key; returns when it closed.
template <class Panel, class... Args>
void pick(UIRoot* root, const char* titleKey, const char* tag, Args&&... args)
{
    auto* panel = jNew<Panel>("src/ui/TrackEditor", __LINE__, tag, root, std::forward<Args>(args)...);
    runPickerDialog(root, panel, titleKey, tag);
}

// The parameter kind that animates a material parameter of this type code and component count, or
// -1 after telling the user (a vector of another size) or the log why none does.
int materialKind(int code, int components, UIRoot* root)
{
    const int kind = TrackReg::MaterialParameterKind(code, components);
    if (kind >= 0)
        return kind;
    if (code == MaterialParameter::VECTOR) {
        msgBox(tr("not_supported"), tr("warning"), root, false);
        return -1;
    }
    const char* function = "TrackEditor::select_material_helper";
    if (code != MaterialParameter::COLOR && code != MaterialParameter::COLOR_HDR)
        jLog::fatal("%s:material param type not supported \"%d\"", function, code);
    jLog::error("%s:%s", function, "0");
    return -1;
}

// The node an unbound parameter stands for is the world itself: its registration names the
// setting, "Render.exposure" giving "exposure".
const jString& afterLastDot(const jString& name, jString& kept)
{
    const int dot = name.rfind(".");
    if (dot >= 0)
        kept = name.substr(dot + 1);
    return kept;
}

} // namespace

const TrackReg* TrackEditor::registration(const jString& type, const char* function)
{
    const TrackReg* reg = Track::GetRegByName(type);
    if (!reg)
        jLog::error("%s:%s", function, "r");
    return reg;
}

bool TrackEditor::pick_node(const jString& type, NodeChoice& choice)
{
    pick<TrackNodeSelectPanel>(getRoot(), "select_node", "TrackEditor::pick_node", m_world, type, &choice.chosen,
                               &choice.node, &choice.internal);
    return choice.chosen;
}

bool TrackEditor::pick_internal_node(Node* node, const jString& type, NodeChoice& choice, const char* function)
{
    if (!node || node->getType() != OBJECT_PREFAB) {
        jLog::error("%s:%s", function, "node && node->getType() == OBJECT_PREFAB");
        return false;
    }
    bool chosen = false;
    pick<TrackSubNodeSelectPanel>(getRoot(), "select_internal_node", "TrackEditor::pick_internal_node", node, type,
                                  &chosen, &choice.internalId);
    if (!chosen)
        return false; // cancelled: nothing is bound, as for the node picker
    const Node* internal = node->getInternalNodeByID(choice.internalId);
    if (!internal) {
        jLog::error("%s:%s", function, "n");
        return false;
    }
    choice.internalName = internal->getName();
    return true;
}

TrackParameter* TrackEditor::binding_target(FParameter* param, int kind, const char* function) const
{
    if (kind >= TRACK_PARAMETER_TOGGLE && kind <= TRACK_PARAMETER_COLOR)
        return param->getTrackParameter();
    if (kind != TRACK_PARAMETER_VEC3 && kind != TRACK_PARAMETER_DVEC3)
        return nullptr;
    const int axisKind = kind == TRACK_PARAMETER_VEC3 ? TRACK_PARAMETER_FLOAT : TRACK_PARAMETER_DOUBLE;
    if (param->getType() != axisKind) {
        jLog::error("%s:type not support \"%d\"", function, param->getType());
        return nullptr;
    }
    FParameter* vector = param->getParent();
    return vector ? vector->getTrackParameter() : nullptr;
}

void TrackEditor::cb_select_node(const UIEventMouse*, UIElement*)
{
    FParameter* param = selected_parameter();
    if (!param)
        return;
    const TrackReg* reg = Track::GetRegByName(param->getTypeName());
    if (!reg || !reg->isForMaterial())
        change_node(param);
}

void TrackEditor::change_node(FParameter* param)
{
    const char* function = "TrackEditor::change_node";
    const jString type = param->getTypeName();
    NodeChoice choice;
    if (!pick_node(type, choice))
        return;
    Node* node = m_world ? m_world->getNodeByID(choice.node) : nullptr;
    if (choice.internal && !pick_internal_node(node, type, choice, function))
        return;
    const TrackReg* reg = registration(type, function);
    if (!reg)
        return;
    TrackParameter* engine = binding_target(param, reg->getType(), function);
    if (!engine)
        return;
    Track* track = AppData::get()->getTrack()->getEngineTrack();
    AppData::get()->getEdits().touch(param);
    if (track->bindNode(engine, m_world, choice.node, node ? node->getName() : jString(), choice.internalId,
                        choice.internalName, type)) {
        engine->setTypeName(type);
        engine->setNodeID(choice.node);
    }
    MsgMngr::get()->notifyHelper(TRACK_MSG_BINDING_CHANGED);
}

// The material picker opens under the node picker's title, and a vector's material binding cannot
// be changed here (a row is never a vector): both are kept as they are on purpose.
void TrackEditor::change_material(FParameter* param)
{
    const char* function = "TrackEditor::change_material";
    const jString type = param->getTypeName();
    bool chosen = false;
    jString material;
    pick<MaterialSelectPanel>(getRoot(), "select_node", function, type, &chosen, &material);
    if (!chosen || !registration(type, function))
        return;
    TrackParameter* engine = binding_target(param, param->getType(), function);
    if (!engine)
        return;
    const jString tag = engine->getMaterialTag();
    AppData::get()->getEdits().touch(param);
    if (AppData::get()->getTrack()->getEngineTrack()->bindMaterial(engine, material, tag, type))
        engine->setTypeName(type);
    MsgMngr::get()->notifyHelper(TRACK_MSG_BINDING_CHANGED);
}

TrackParameter* TrackEditor::gen_param(TRACK_PARAMETER_TYPE kind, const jString& type, FParameter** out)
{
    if (out)
        *out = nullptr;
    if (kind > TRACK_PARAMETER_DVEC3)
        return nullptr;
    FParameter* param = AppData::get()->getTrack()->createParameter(kind, type);
    if (out)
        *out = param;
    return param ? param->getTrackParameter() : nullptr;
}

// Both pickers are asked before the parameter is made, so that cancelling either adds nothing. A
// plain node binding passes only the node's id on purpose (its name stays empty).
void TrackEditor::select_node_helper(const jString& type)
{
    const char* function = "TrackEditor::select_node_helper";
    const TrackReg* reg = registration(type, function);
    if (!reg)
        return;
    NodeChoice choice;
    if (!pick_node(type, choice))
        return;
    Node* node = Node::GetNode(choice.node);
    jString nodeName;
    if (node && choice.internal) {
        nodeName = node->getName();
        if (!pick_internal_node(node, type, choice, function))
            return;
    }
    FParameter* made = nullptr;
    TrackParameter* engine = gen_param(reg->getType(), type, &made);
    Track* track = AppData::get()->getTrack()->getEngineTrack();
    if (engine && track->bindNode(engine, m_world, choice.node, nodeName, choice.internalId, choice.internalName,
                                  type)) {
        engine->setTypeName(type);
        engine->setNodeID(choice.node);
        made->retitle();
    }
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_NEW);
}

void TrackEditor::select_material_helper(const jString& type)
{
    const char* function = "TrackEditor::select_material_helper";
    if (!registration(type, function))
        return;
    bool chosen = false;
    jString name;
    pick<MaterialSelectPanel>(getRoot(), "select_material", function, type, &chosen, &name);
    if (!chosen)
        return;
    Material* material = Engine::get()->getMaterialManager()->get(name);
    if (!material) {
        jLog::error("%s:%s", function, "mat");
        return;
    }
    chosen = false;
    jString tag;
    pick<MaterialParamSelectPanel>(getRoot(), "select_param", function, material, &chosen, &tag);
    if (!chosen)
        return;
    const MaterialParameter* mp = material->getParameterByID(material->findParameterIDByTag(tag));
    if (!mp) {
        jLog::error("%s:%s", function, "mp");
        return;
    }
    const int kind = materialKind(mp->getType(), mp->getNumComponents(), getRoot());
    FParameter* made = nullptr;
    TrackParameter* engine = kind < 0 ? nullptr : gen_param(TRACK_PARAMETER_TYPE(kind), type, &made);
    if (!engine)
        return;
    if (AppData::get()->getTrack()->getEngineTrack()->bindMaterial(engine, material->getName(), tag, type)) {
        engine->setTypeName(type);
        made->retitle(); // the rows take the tag as their name
    }
    MsgMngr::get()->notifyHelper(TRACK_MSG_PARAMETER_NEW);
}

void TrackEditor::set_mat_hierarchy_ui_hidden(bool hidden)
{
    for (UIElement* element : m_mat_hierarchy_ui)
        element->setHidden(hidden);
}

FParameter* TrackEditor::selected_parameter() const
{
    UITrackRow* row = m_rows ? m_rows->getCurrent() : nullptr;
    return row ? static_cast<FParameterSingle*>(row->getData()) : nullptr;
}

int TrackEditor::getNodeID() const
{
    const FParameter* param = selected_parameter();
    return param ? param->getNodeIndex() : -1;
}

bool TrackEditor::isForMaterail() const
{
    const FParameter* param = selected_parameter();
    return param && param->isForMaterial();
}

bool TrackEditor::isMaterialHierarchy() const
{
    const FParameter* param = selected_parameter();
    return param && param->isMaterialHierarchy();
}

void TrackEditor::setMaterialHierarchy(bool hierarchy)
{
    if (FParameter* param = selected_parameter())
        param->setMaterialHierarchy(hierarchy);
}

// Names what the row's parameter (an axis: its vector) is bound to by the names saved with the
// binding, so that it reads the same with or without the scene, and ends with its type.
jString TrackEditor::describe_row(const UITrackRow* row)
{
    const auto* param = static_cast<const FParameter*>(row->getData());
    if (!param)
        return jString();
    const FParameter* bound = param->getTopParameter();
    const TrackParameter* engine = bound->getTrackParameter();
    jString target;
    if (engine && engine->isForMaterial())
        target = jString("material ") + engine->getMaterialName() + ", " + engine->getMaterialTag();
    else if (bound->getNodeIndex() != -1 && engine && engine->getNodeName().nempty())
        target = engine->getNodeName();
    else if (bound->getNodeIndex() != -1)
        target = jString("node ") + std::to_string(bound->getNodeIndex()).c_str();
    return target.empty() ? bound->getTypeName() : target + " (" + bound->getTypeName() + ")";
}

const jString& TrackEditor::getTrackDataType() const
{
    const FParameter* param = selected_parameter();
    const TrackReg* reg = param ? Track::GetRegByName(param->getTypeName()) : nullptr;
    return reg ? reg->getName() : jString::null();
}

const jString& TrackEditor::getNodeName() const
{
    const FParameter* param = selected_parameter();
    if (!param)
        return jString::null();
    const int id = param->getNodeIndex();
    if (id == -1) {
        const TrackReg* reg = Track::GetRegByName(param->getTypeName());
        if (!reg || !reg->isForMaterial())
            return reg ? afterLastDot(reg->getName(), m_node_name_text) : jString::null();
        if (param->getType() != TRACK_PARAMETER_FLOAT && param->getType() != TRACK_PARAMETER_COLOR)
            return jString::null();
        const FParameter* bound = param->getTopParameter(); // an axis: its vector
        return bound->getTrackParameter()->getMaterialTag();
    }
    const Node* node = find_bound_node(param, "TrackEditor::getNodeName", true);
    return node ? node->getName() : jString::null();
}

const jString& TrackEditor::getNodeTypeString() const
{
    const FParameter* param = selected_parameter();
    if (!param)
        return jString::null();
    const int id = param->getNodeIndex();
    if (id == -1) {
        const TrackReg* reg = Track::GetRegByName(param->getTypeName());
        m_node_type_text = reg ? reg->getName() : jString();
        const int dot = m_node_type_text.find(".");
        if (dot >= 0)
            m_node_type_text = m_node_type_text.substr(0, dot);
        return m_node_type_text;
    }
    const Node* node = find_bound_node(param, "TrackEditor::getNodeTypeString", false);
    m_node_type_text = node ? node->getTypeName() : "";
    return node ? m_node_type_text : jString::null();
}

const Node* TrackEditor::find_bound_node(const FParameter* param, const char* function, bool error) const
{
    if (!m_world)
        return nullptr;
    const int id = param->getNodeIndex();
    const Node* node = m_world->getNodeByID(id);
    if (!node)
        node = m_world->getNodeByName(param->getNodeName());
    if (!node)
        node = Node::GetNode(id);
    if (!node && error)
        jLog::error("%s:can not find node by id \"%d\" and name \"%s\"", function, id, param->getNodeName().c_str());
    else if (!node)
        jLog::warning("%s:can not find node by id \"%d\" and name \"%s\"", function, id, param->getNodeName().c_str());
    return node;
}
