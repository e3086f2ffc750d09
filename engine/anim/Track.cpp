#include "anim/Track.h"

#include <string>

#include "anim/TrackCache.h"
#include "anim/TrackKeyCodec.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterOpaque.h"
#include "anim/TrackParameterString.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"
#include "anim/TrackReadAhead.h"
#include "anim/TrackReader.h"
#include "anim/TrackRegTable.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "kit/jWorker.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialManager.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

const char* const FILE_TAG = "engine/anim/Track";

// Returns whether a parameter of kind b can play a registration of kind a: the same kind, or the two
// string kinds (a string parameter takes its kind from its registration).
bool sameKind(int a, int b)
{
    auto text = [](int k) { return k == TRACK_PARAMETER_STRING_FILE || k == TRACK_PARAMETER_STRING_MATERIAL; };
    return a == b || (text(a) && text(b));
}
const char* const FORMAT_NAME = "kuvo-anim";
// Far above any rate footage or games run at; a larger number is a typing slip.
constexpr float MAX_FRAME_RATE = 1000.0f;

// Reads the play range of a track document into begin and end, recording every problem. A range
// that ends before it begins is one only for a strict reader: the engine loads it as it is.
void readRange(TrackReader& reader, const Package* root, float& begin, float& end)
{
    const Package* beginNode = reader.require(root, "begin");
    bool read = beginNode && reader.readTime(beginNode, begin);
    const Package* endNode = reader.require(root, "end");
    read = endNode && reader.readTime(endNode, end) && read;
    if (read && reader.isStrict() && end < begin)
        reader.fail(endNode, "end " + std::string(ToString(end).c_str()) + " comes before begin " +
                                 ToString(begin).c_str());
}

// The optional frame rate: absent means none (0); present, it must lie in (0, MAX_FRAME_RATE].
float readFrameRate(TrackReader& reader, const Package* root)
{
    const Package* node = reader.optional(root, "frame_rate");
    float fps = 0.0f;
    if (!node || !reader.readFloat(node, fps, "frame_rate"))
        return 0.0f;
    if (fps > 0.0f && fps <= MAX_FRAME_RATE)
        return fps;
    reader.fail(node, "frame_rate " + std::string(ToString(fps).c_str()) + " is not above 0 and at most " +
                          std::to_string(int(MAX_FRAME_RATE)));
    return 0.0f;
}

// Returns the node a binding names in world: by id, else by name; then the prefab's internal node
// by id, else by name, when an internal node is named. Null when any step finds nothing.
Node* findNode(World* world, int id, const jString& name, int internalId, const jString& internalName)
{
    if (!world || (id == -1 && name.empty()))
        return nullptr;
    Node* node = id != -1 ? world->getNodeByID(id) : nullptr;
    if (!node && name.nempty())
        node = world->getNodeByName(name);
    if (!node || (internalId == -1 && internalName.empty()))
        return node;
    Node* internal = internalId != -1 ? node->getInternalNodeByID(internalId) : nullptr;
    for (int i = 0; !internal && internalName.nempty() && i < node->getNumInternalNodes(); ++i) {
        if (node->getInternalNode(i)->getName() == internalName)
            internal = node->getInternalNode(i);
    }
    return internal;
}

} // namespace

Track::Track() = default;

Track::~Track()
{
    release();
}

void Track::release()
{
    clear_parameters();
    jDelete(m_cache, FILE_TAG, __LINE__, "Track::release");
    m_cache = nullptr;
}

void Track::clear_parameters()
{
    m_playback.clear();
    for (TrackParameter* p : m_parameters)
        jDelete(p, FILE_TAG, __LINE__, "Track::release");
    m_parameters.release();
}

void Track::reset()
{
    m_begin = 0.0f;
    m_end = 0.0f;
    m_loop = false;
    m_frame_rate = 0.0f;
    m_snapping = false;
    m_time = 0.0f;
}

void Track::setBeginTime(float t)
{
    m_begin = t > 0.0f ? t : 0.0f;
}

void Track::setEndTime(float t)
{
    m_end = t > 0.0f ? t : 0.0f;
}

TrackParameter* Track::CreateParameter(int kind)
{
    const char* tag = "Track::CreateParameter";
    switch (kind) {
    case TRACK_PARAMETER_TOGGLE:
        return jNew<TrackParameterToggle>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_FLOAT:
        return jNew<TrackParameterFloat>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_DOUBLE:
        return jNew<TrackParameterDouble>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_COLOR:
        return jNew<TrackParameterColor>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_VEC3:
        return jNew<TrackParameterVec3>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_DVEC3:
        return jNew<TrackParameterDVec3>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_OPAQUE:
        return jNew<TrackParameterOpaque>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_TRACK:
        return jNew<TrackParameterTrack>(FILE_TAG, __LINE__, tag);
    case TRACK_PARAMETER_STRING_FILE:
    case TRACK_PARAMETER_STRING_MATERIAL:
        return jNew<TrackParameterString>(FILE_TAG, __LINE__, tag, static_cast<TRACK_PARAMETER_TYPE>(kind));
    default:
        return nullptr;
    }
}

bool Track::read(TrackReader& reader, const Package* root, World* world, TrackReadAhead* ahead)
{
    if (!root || !root->isObject()) {
        reader.fail(root, "a track document must be a JSON object");
        return false;
    }
    if (const Package* format = reader.optional(root, "format")) {
        if (!format->isString() || std::string(format->getString()) != FORMAT_NAME)
            reader.fail(format, std::string("format must be \"") + FORMAT_NAME + "\"");
    }
    int version = 0;
    const Package* versionNode = reader.require(root, "version");
    if (versionNode && reader.readInt(versionNode, version, "version") && (version < 1 || version > FORMAT_VERSION))
        reader.fail(versionNode, "format version " + std::to_string(version) + " is not one this build reads (1 to " +
                                     std::to_string(FORMAT_VERSION) + ")");
    float begin = 0.0f, end = 0.0f;
    readRange(reader, root, begin, end);
    bool loop = reader.optionalBool(root, "loop", false);
    float frameRate = readFrameRate(reader, root);
    bool snapping = reader.optionalBool(root, "snap", false);

    jVector<TrackParameter*> parameters;
    const Package* list = reader.require(root, "parameters");
    if (list && !list->isArray())
        reader.fail(list, "parameters must be an array");
    if (list && list->isArray() && ahead && ahead->readAny())
        take_parameters(reader, list, *ahead, parameters);
    else if (list && list->isArray())
        read_parameters(reader, list, parameters);
    if (reader.failed()) {
        for (TrackParameter* p : parameters)
            jDelete(p, FILE_TAG, __LINE__, "Track::read");
        return false;
    }
    clear_parameters();
    for (TrackParameter* p : parameters)
        addParameter(p);
    m_begin = begin;
    m_end = end;
    m_loop = loop;
    m_frame_rate = frameRate;
    m_snapping = snapping;
    setWorld(world);
    return true;
}

void Track::read_parameters(TrackReader& reader, const Package* list, jVector<TrackParameter*>& out)
{
    struct Half {
        const Package* list;
        int from, to;
        TrackReader reader;
        jVector<TrackParameter*> read;
    };
    const int count = list->getNumChildren();
    Half second{list, count / 2, count, TrackReader(reader.isStrict()), {}};
    const auto job = [](void* context) {
        auto* half = static_cast<Half*>(context);
        read_range(half->reader, half->list, half->from, half->to, half->read);
    };
    const bool split = count > 1 && jWorker::get()->start(job, &second);
    read_range(reader, list, 0, split ? second.from : count, out);
    if (!split)
        return;
    jWorker::get()->wait();
    for (TrackParameter* p : second.read)
        out.append(p);
    reader.take(second.reader);
}

void Track::take_parameters(TrackReader& reader, const Package* list, TrackReadAhead& ahead,
                            jVector<TrackParameter*>& out)
{
    for (int i = 0; i < list->getNumChildren(); ++i) {
        TrackParameter* p = ahead.take(list, i);
        if (!p)
            p = read_parameter(reader, list->getChild(i));
        if (p)
            out.append(p);
    }
}

void Track::read_range(TrackReader& reader, const Package* list, int from, int to, jVector<TrackParameter*>& out)
{
    for (int i = from; i < to; ++i) {
        if (TrackParameter* p = read_parameter(reader, list->getChild(i)))
            out.append(p);
    }
}

TrackParameter* Track::read_parameter(TrackReader& reader, const Package* object)
{
    if (!object->isObject()) {
        reader.fail(object, "a parameter must be an object");
        return nullptr;
    }
    int kind = -1;
    const Package* kindNode = reader.require(object, "kind");
    if (!kindNode || !reader.readInt(kindNode, kind, "kind"))
        return nullptr;
    TrackParameter* p = CreateParameter(kind);
    if (!p) {
        reader.fail(kindNode, "kind " + std::to_string(kind) + " is not a parameter kind (0 to 9)");
        return nullptr;
    }
    p->read(reader, object);
    const TrackReg* reg = p->getReg();
    if (reg && reg->getType() != kind) {
        reader.fail(kindNode, "type \"" + std::string(p->getTypeName().c_str()) + "\" animates kind " +
                                  std::to_string(reg->getType()) + ", not kind " + std::to_string(kind));
    } else if (!reg && reader.isStrict() && kind != TRACK_PARAMETER_OPAQUE) {
        const Package* type = reader.optional(object, "type");
        reader.fail(type ? type : object, "type \"" + std::string(p->getTypeName().c_str()) + "\" is not registered");
    }
    return p;
}

bool Track::load(Package* root, World* world)
{
    TrackReader reader;
    if (read(reader, root, world))
        return true;
    reader.logProblems("Track::load");
    return false;
}

bool Track::loadFile(const char* path, World* world)
{
    mjl reader;
    if (!reader.open(path, mjl::NUMBER_ROWS))
        return false;
    TrackReader track;
    if (read(track, reader.getRoot(), world))
        return true;
    track.logProblems(path);
    return false;
}

bool Track::save(Package* root) const
{
    if (!root) {
        jLog::error("%s:%s", "Track::save", "root");
        return false;
    }
    root->setObject();
    root->addString("format", FORMAT_NAME);
    root->addInt("version", FORMAT_VERSION);
    root->addDouble("begin", TrackKeyCodec::widen(m_begin));
    root->addDouble("end", TrackKeyCodec::widen(m_end));
    root->addBool("loop", m_loop);
    // Written only when set, so that a track without them stays as older writers made it.
    if (m_frame_rate > 0.0f)
        root->addDouble("frame_rate", TrackKeyCodec::widen(m_frame_rate));
    if (m_snapping)
        root->addBool("snap", true);
    Package* list = root->addArray("parameters");
    for (const TrackParameter* p : m_parameters)
        p->write(list->add());
    return true;
}

bool Track::saveFile(const char* path, std::string* error) const
{
    Package root;
    return save(&root) && mjl::save(path, &root, mjl::DEFAULT, error);
}

TrackParameter* Track::getParameter(int i) const
{
    return i >= 0 && i < m_parameters.size() ? m_parameters[i] : nullptr;
}

bool Track::addParameter(TrackParameter* param)
{
    if (!param || param->getTrack()) {
        jLog::error("%s:%s", "Track::addParameter", "param && !param->getTrack()");
        return false;
    }
    m_parameters.append(param);
    param->setTrack(this);
    invalidate_playback();
    return true;
}

bool Track::removeParameter(TrackParameter* param)
{
    if (!m_parameters.contains(param))
        return false;
    invalidate_playback(); // hands the last played value back while the parameter is still ours
    m_parameters.removeValue(param);
    param->setTrack(nullptr);
    return true;
}

bool Track::insertParameter(int index, TrackParameter* param)
{
    if (!param || param->getTrack()) {
        jLog::error("%s:%s", "Track::insertParameter", "param && !param->getTrack()");
        return false;
    }
    m_parameters.insert(index, param);
    param->setTrack(this);
    invalidate_playback();
    return true;
}

TrackParameter* Track::readParameter(const Package* object, const char* source)
{
    TrackReader reader;
    TrackParameter* param = read_parameter(reader, object);
    if (!reader.failed())
        return param;
    reader.logProblems(source);
    if (param)
        jDelete(param, FILE_TAG, __LINE__, "Track::readParameter");
    return nullptr;
}

void Track::set(float t)
{
    if (m_playing) {
        jLog::error("%s:%s", "Track::set", "the track is already playing; a track cannot play itself");
        return;
    }
    m_playing = true;
    m_time = t;
    if (!m_playback.isValid())
        build_playback();
    m_playback.play(t);
    m_playing = false;
}

void Track::build_playback()
{
    for (TrackParameter* p : m_parameters) {
        if (p->isEnabled() && p->isTargetStale())
            resolve(p);
    }
    m_playback.build(m_parameters);
}

void Track::resolve(TrackParameter* p)
{
    TrackTarget target;
    target.world = m_world;
    const TrackReg* reg = p->getReg();
    bool bound = false;
    if (reg && reg->getType() == p->getType()) {
        switch (reg->getBinding()) {
        case TrackReg::BIND_GLOBAL:
            bound = m_world != nullptr;
            break;
        case TrackReg::BIND_TRACK:
            bound = true;
            break;
        case TrackReg::BIND_NODE:
            target.node = findNode(m_world, p->getNodeID(), p->getNodeName(), p->getInternalNodeID(),
                                   p->getInternalNodeName());
            bound = target.node && reg->isAcceptNodeType(target.node->getType());
            break;
        case TrackReg::BIND_MATERIAL:
            target.material = Engine::get()->getMaterialManager()->get(p->getMaterialName());
            target.parameter = target.material ? target.material->findParameterIDByTag(p->getMaterialTag()) : -1;
            bound = target.parameter >= 0;
            break;
        }
    }
    p->setTarget(target, bound);
}

void Track::setWorld(World* world)
{
    m_world = world;
    rebind();
    if (m_cache)
        m_cache->setWorld(world);
}

void Track::rebind()
{
    for (TrackParameter* p : m_parameters)
        resolve(p);
}

bool Track::check_binding(TrackParameter* param, const TrackReg* reg, const jString& typeName, const char* function) const
{
    if (!param || param->getTrack() != this) {
        jLog::error("%s:%s", function, "param is held by this track");
        return false;
    }
    if (!reg) {
        jLog::error("%s:type \"%s\" is not registered", function, typeName.c_str());
        return false;
    }
    if (!sameKind(reg->getType(), param->getType())) {
        jLog::error("%s:type \"%s\" animates kind %d, not kind %d", function, typeName.c_str(), reg->getType(),
                    param->getType());
        return false;
    }
    return true;
}

bool Track::bindNode(TrackParameter* param, World* world, int nodeId, const jString& nodeName, int internalId,
                     const jString& internalName, const jString& typeName)
{
    const char* function = "Track::bindNode";
    const TrackReg* reg = GetRegByName(typeName);
    if (!check_binding(param, reg, typeName, function))
        return false;
    if (reg->isForMaterial()) {
        jLog::error("%s:type \"%s\" binds to materials, not nodes", function, typeName.c_str());
        return false;
    }
    if (nodeId != -1) {
        Node* node = findNode(world, nodeId, nodeName, internalId, internalName);
        if (!node) {
            jLog::error("%s:no node with id %d (name \"%s\", internal node %d \"%s\") in the world", function, nodeId,
                        nodeName.c_str(), internalId, internalName.c_str());
            return false;
        }
        if (reg->isForNode() && !reg->isAcceptNodeType(node->getType())) {
            jLog::error("%s:type \"%s\" does not animate nodes of type %s", function, typeName.c_str(),
                        node->getTypeName());
            return false;
        }
    }
    param->setTypeName(typeName);
    param->setNodeID(nodeId);
    param->setNodeName(nodeName);
    param->setInternalNode(internalId, internalName);
    param->setMaterial(jString::null(), jString::null());
    if (world && world != m_world)
        setWorld(world);
    return true;
}

bool Track::bindMaterial(TrackParameter* param, const jString& material, const jString& tag, const jString& typeName)
{
    const char* function = "Track::bindMaterial";
    const TrackReg* reg = GetRegByName(typeName);
    if (!check_binding(param, reg, typeName, function))
        return false;
    if (!reg->isForMaterial()) {
        jLog::error("%s:type \"%s\" does not bind to materials", function, typeName.c_str());
        return false;
    }
    Material* m = Engine::get()->getMaterialManager()->get(material);
    if (!m || !reg->isAcceptMaterial(m)) {
        jLog::error("%s:no material \"%s\" that type \"%s\" can animate", function, material.c_str(), typeName.c_str());
        return false;
    }
    int id = m->findParameterIDByTag(tag);
    if (id < 0) {
        jLog::error("%s:material \"%s\" has no parameter \"%s\"", function, material.c_str(), tag.c_str());
        return false;
    }
    param->setTypeName(typeName);
    param->setMaterial(m->getName(), tag);
    param->setDisplayName(tag);
    param->setNodeID(-1);
    param->setNodeName(jString::null());
    param->setInternalNode(-1, jString::null());
    return true;
}

const jVector<TrackReg*>& Track::GetAllRegs()
{
    return TrackRegTable::All();
}

TrackReg* Track::GetRegByName(const jString& name)
{
    return TrackRegTable::Find(name);
}

Track* Track::getNestedTrack(const jString& file)
{
    return cache()->get(file, m_world);
}

TrackCache* Track::cache()
{
    Track* outer = m_outer ? m_outer : this;
    if (!outer->m_cache)
        outer->m_cache = jNew<TrackCache>(FILE_TAG, __LINE__, "Track::cache", outer);
    return outer->m_cache;
}
