#include "anim/GltfImport.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include "GltfCurve.h"
#include "GltfRotation.h"
#include "TinyGltf.h"
#include "anim/Track.h"
#include "anim/TrackParameterVec3.h"
#include "kit/jAllocator.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

const char* const FILE_TAG = "engine/anim/GltfImport";

// Images are never needed for animation: the library is told to leave them alone.
bool skipImage(tinygltf::Image*, const int, std::string*, std::string*, int, int, const unsigned char*, int, void*)
{
    return true;
}

// Returns whether the file starts like a binary glTF container.
bool isBinary(const std::string& path)
{
    char magic[4] = {};
    std::ifstream in(path, std::ios::binary);
    return in.read(magic, 4) && std::string(magic, 4) == "glTF";
}

// The parameter type that a glTF channel path maps to; null for paths that are not imported.
const char* typeOf(const std::string& path)
{
    if (path == "translation")
        return "Node.position";
    if (path == "rotation")
        return "Node.rotation";
    if (path == "scale")
        return "Node.scale";
    return nullptr;
}

} // namespace

GltfImport::~GltfImport()
{
    clear();
}

void GltfImport::setFrameRate(float fps)
{
    if (fps > 0.0f)
        m_frame_rate = fps;
}

bool GltfImport::read(const std::string& path)
{
    clear();
    m_path = path;
    tinygltf::Model model;
    if (!load(path, model))
        return false;
    int animation = pickAnimation(model);
    if (animation < 0)
        return false;
    const tinygltf::Animation& a = model.animations[animation];
    for (size_t c = 0; c < a.channels.size(); ++c) {
        if (!readChannel(model, animation, static_cast<int>(c))) {
            std::string error = m_error;
            clear();
            m_error = error;
            return false;
        }
    }
    return true;
}

int GltfImport::addTo(Track& track)
{
    int added = 0;
    for (TrackParameter* p : m_parameters)
        added += track.addParameter(p) ? 1 : 0;
    m_parameters.clear();
    if (track.getEndTime() < m_end)
        track.setEndTime(m_end);
    if (m_world && added > 0)
        track.setWorld(m_world);
    return added;
}

bool GltfImport::load(const std::string& path, tinygltf::Model& model)
{
    tinygltf::TinyGLTF loader;
    loader.SetImageLoader(skipImage, nullptr);
    std::string error, warning;
    bool ok = isBinary(path) ? loader.LoadBinaryFromFile(&model, &error, &warning, path)
                             : loader.LoadASCIIFromFile(&model, &error, &warning, path);
    if (ok)
        return true;
    while (!error.empty() && (error.back() == '\n' || error.back() == ' '))
        error.pop_back();
    m_error = path + ": not a readable glTF file: " + (error.empty() ? "unknown problem" : error);
    return false;
}

int GltfImport::pickAnimation(const tinygltf::Model& model)
{
    int count = static_cast<int>(model.animations.size());
    if (count == 0) {
        m_error = m_path + ": the file has no animation";
        return -1;
    }
    if (m_animation.empty())
        return 0;
    for (int i = 0; i < count; ++i) {
        if (model.animations[i].name == m_animation)
            return i;
    }
    char* end = nullptr;
    long index = std::strtol(m_animation.c_str(), &end, 10);
    if (*end == '\0' && index >= 0 && index < count)
        return static_cast<int>(index);
    m_error = m_path + ": no animation is named or numbered \"" + m_animation + "\" (the file has " +
              std::to_string(count) + ")";
    return -1;
}

bool GltfImport::readChannel(const tinygltf::Model& model, int animation, int channel)
{
    const tinygltf::Animation& a = model.animations[animation];
    const tinygltf::AnimationChannel& ch = a.channels[channel];
    std::string where = m_path + ": animation " + std::to_string(animation) + " channel " + std::to_string(channel);
    const char* type = typeOf(ch.target_path);
    if (!type || ch.target_node < 0) {
        m_warnings.push_back(where + ": " + (type ? "no target node" : "path \"" + ch.target_path + "\"") +
                             " cannot be animated by a track; skipped");
        return true;
    }
    if (ch.target_node >= static_cast<int>(model.nodes.size())) {
        m_error = where + ": targets node " + std::to_string(ch.target_node) + ", which does not exist";
        return false;
    }
    if (ch.sampler < 0 || ch.sampler >= static_cast<int>(a.samplers.size())) {
        m_error = where + ": uses sampler " + std::to_string(ch.sampler) + ", which does not exist";
        return false;
    }
    GltfCurve curve;
    std::string problem;
    bool rotation = ch.target_path == "rotation";
    if (!curve.read(model, a.samplers[ch.sampler], rotation ? 4 : 3, problem)) {
        m_error = where + " (sampler " + std::to_string(ch.sampler) + "): " + problem;
        return false;
    }
    const std::string& given = model.nodes[ch.target_node].name;
    std::string name = given.empty() ? "node " + std::to_string(ch.target_node) : given;
    int id = bind(name, type);
    if (id == -2) {
        m_error = where + ": the scene has no node \"" + name + "\" that " + type + " can animate";
        return false;
    }
    TrackParameter* p = rotation ? makeRotation(curve) : makeVector(curve);
    m_parameters.push_back(p);
    p->setTypeName(type);
    p->setName((name + " " + ch.target_path).c_str());
    p->setNodeName(name.c_str());
    p->setNodeID(id);
    m_end = std::max(m_end, curve.getTime(curve.getNumKeys() - 1));
    return true;
}

int GltfImport::bind(const std::string& nodeName, const char* typeName)
{
    if (!m_world)
        return -1;
    Node* node = m_world->getNodeByName(nodeName.c_str());
    const TrackReg* reg = Track::GetRegByName(typeName);
    if (!node || !reg || !reg->isAcceptNodeType(node->getType()))
        return -2;
    return node->getID();
}

TrackParameter* GltfImport::makeVector(const GltfCurve& curve)
{
    static const int types[] = {TRACK_KEY_CONSTANT, TRACK_KEY_LINEAR, TRACK_KEY_BREAK};
    int type = types[curve.getInterpolation()];
    auto* p = static_cast<TrackParameterVec3*>(Track::CreateParameter(TRACK_PARAMETER_VEC3));
    int n = curve.getNumKeys();
    for (int c = 0; c < 3; ++c) {
        TrackParameterFloat* component = p->getComponent(c);
        for (int k = 0; k < n; ++k) {
            // A Bezier handle a third of the way along the segment, with the glTF tangent scaled by
            // the segment's length, makes the Bezier segment the same cubic as glTF's Hermite spline.
            double before = k > 0 ? (static_cast<double>(curve.getTime(k)) - curve.getTime(k - 1)) / 3.0 : 0.0;
            double after = k + 1 < n ? (static_cast<double>(curve.getTime(k + 1)) - curve.getTime(k)) / 3.0 : 0.0;
            vec4 handles(static_cast<float>(-before), static_cast<float>(-curve.getInTangent(k, c) * before),
                         static_cast<float>(after), static_cast<float>(curve.getOutTangent(k, c) * after));
            component->appendKey(curve.getTime(k), static_cast<float>(curve.getValue(k, c)), handles, type);
        }
        component->update();
    }
    return p;
}

TrackParameter* GltfImport::makeRotation(const GltfCurve& curve)
{
    auto* p = static_cast<TrackParameterVec3*>(Track::CreateParameter(TRACK_PARAMETER_VEC3));
    bool step = curve.getInterpolation() == GltfCurve::STEP;
    std::vector<float> times;
    for (int k = 0; step && k < curve.getNumKeys(); ++k)
        times.push_back(curve.getTime(k));
    if (!step)
        times = frames(curve.getTime(0), curve.getTime(curve.getNumKeys() - 1));
    dvec3 euler;
    for (float t : times) {
        euler = GltfRotation::toEuler(curve.rotationAt(t), euler);
        for (int c = 0; c < 3; ++c)
            p->getComponent(c)->appendKey(t, static_cast<float>(euler[c]), vec4_zero,
                                          step ? TRACK_KEY_CONSTANT : TRACK_KEY_LINEAR);
    }
    for (int c = 0; c < 3; ++c)
        p->getComponent(c)->update();
    return p;
}

std::vector<float> GltfImport::frames(float first, float last) const
{
    // Frames closer than this share of a frame to an end are left out, so that no two keys are
    // nearly on top of each other.
    const double margin = 1e-3;
    std::vector<float> times{first};
    double frame = 1.0 / m_frame_rate;
    for (long f = static_cast<long>(std::floor(first / frame)) + 1; f * frame < last - margin * frame; ++f) {
        if (f * frame > first + margin * frame)
            times.push_back(static_cast<float>(f * frame));
    }
    if (last > first)
        times.push_back(last);
    return times;
}

void GltfImport::clear()
{
    for (TrackParameter* p : m_parameters)
        jDelete(p, FILE_TAG, __LINE__, "GltfImport::clear");
    m_parameters.clear();
    m_warnings.clear();
    m_error.clear();
    m_end = 0.0f;
}
