#include "anim/GltfExport.h"

#include <algorithm>
#include <cstring>
#include <sstream>

#include "../io/AtomicFile.h"
#include "GltfChannel.h"
#include "GltfRotation.h"
#include "TinyGltf.h"
#include "anim/Track.h"
#include "anim/TrackParameterVec3.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

// The glTF path of each exported parameter type.
struct Mapping {
    const char* type;
    const char* path;
};
const Mapping k_mappings[] = {{"Node.position", "translation"}, {"Node.rotation", "rotation"}, {"Node.scale", "scale"}};

const char* const k_interpolations[] = {"STEP", "LINEAR", "CUBICSPLINE"};

// Appends numbers to the model's one buffer as a buffer view and an accessor of width components
// per element (with the min and max that glTF requires of key times); returns the accessor.
int addAccessor(tinygltf::Model& model, const std::vector<float>& numbers, int width)
{
    std::vector<unsigned char>& data = model.buffers[0].data;
    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = data.size();
    view.byteLength = numbers.size() * sizeof(float);
    data.resize(data.size() + view.byteLength);
    std::memcpy(data.data() + view.byteOffset, numbers.data(), view.byteLength);
    model.bufferViews.push_back(view);
    tinygltf::Accessor a;
    a.bufferView = static_cast<int>(model.bufferViews.size()) - 1;
    a.componentType = TINYGLTF_COMPONENT_TYPE_FLOAT;
    a.count = numbers.size() / static_cast<size_t>(width);
    a.type = width == 1 ? TINYGLTF_TYPE_SCALAR : (width == 3 ? TINYGLTF_TYPE_VEC3 : TINYGLTF_TYPE_VEC4);
    a.minValues.assign(numbers.begin(), numbers.begin() + width);
    a.maxValues = a.minValues;
    for (size_t i = 0; i < numbers.size(); ++i) {
        size_t c = i % static_cast<size_t>(width);
        a.minValues[c] = std::min<double>(a.minValues[c], numbers[i]);
        a.maxValues[c] = std::max<double>(a.maxValues[c], numbers[i]);
    }
    model.accessors.push_back(a);
    return static_cast<int>(model.accessors.size()) - 1;
}

bool endsWith(const std::string& text, const char* tail)
{
    size_t n = std::strlen(tail);
    return text.size() >= n && strcasecmp(text.c_str() + text.size() - n, tail) == 0;
}

} // namespace

bool GltfExport::write(const Track& track, const World& world, const std::string& path)
{
    m_error.clear();
    m_warnings.clear();
    m_nodes.clear();
    tinygltf::Model model;
    model.asset.version = "2.0";
    model.asset.generator = "kuvo-anim";
    model.buffers.resize(1);
    model.animations.resize(1);
    model.animations[0].name = m_name;
    for (int i = 0; i < track.getNumParameters(); ++i) {
        if (!addParameter(model, track.getParameter(i), world))
            return false;
    }
    if (model.animations[0].channels.empty()) {
        m_error = m_source + ": the track has no node position, rotation or scale with keys to export";
        return false;
    }
    tinygltf::Scene scene;
    for (size_t n = 0; n < model.nodes.size(); ++n)
        scene.nodes.push_back(static_cast<int>(n));
    model.scenes.push_back(scene);
    model.defaultScene = 0;
    return save(model, path);
}

bool GltfExport::addParameter(tinygltf::Model& model, const TrackParameter* p, const World& world)
{
    std::string label = std::string("parameter \"") + p->getName().c_str() + "\" (" + p->getTypeName().c_str() + ")";
    const Mapping* mapping = std::find_if(std::begin(k_mappings), std::end(k_mappings), [p](const Mapping& m) {
        return p->getTypeName() == m.type;
    });
    if (mapping == std::end(k_mappings) || p->getType() != TRACK_PARAMETER_VEC3 || p->getInternalNodeID() != -1) {
        m_warnings.push_back(label + " is not exported: glTF animates node translations, rotations and scales only");
        return true;
    }
    if (!p->isEnabled() || p->getNumKeys() == 0) {
        m_warnings.push_back(label + " is not exported: " + (p->isEnabled() ? "it has no keys" : "it is switched off"));
        return true;
    }
    const Node* node = world.getNodeByName(p->getNodeName());
    if (!node) {
        m_error = m_source + ": " + label + " animates node \"" + p->getNodeName().c_str() + "\", which the scene does not have";
        return false;
    }
    tinygltf::Animation& animation = model.animations[0];
    tinygltf::AnimationChannel target;
    target.target_node = nodeIndex(model, node);
    target.target_path = mapping->path;
    // glTF allows one channel per node and path: the first parameter wins.
    for (const tinygltf::AnimationChannel& c : animation.channels) {
        if (c.target_node == target.target_node && c.target_path == target.target_path) {
            m_warnings.push_back(label + " is not exported: another parameter animates the same node's " +
                                 mapping->path);
            return true;
        }
    }
    bool rotation = target.target_path == "rotation";
    vec3 rest = rotation ? node->getRotation() : (target.target_path == "scale" ? node->getScale() : node->getPosition());
    GltfChannel channel(static_cast<const TrackParameterVec3&>(*p), rest, rotation);
    tinygltf::AnimationSampler sampler;
    sampler.input = addAccessor(model, channel.getTimes(), 1);
    sampler.output = addAccessor(model, channel.getValues(), channel.getWidth());
    sampler.interpolation = k_interpolations[channel.getInterpolation()];
    animation.samplers.push_back(sampler);
    target.sampler = static_cast<int>(animation.samplers.size()) - 1;
    animation.channels.push_back(target);
    return true;
}

int GltfExport::nodeIndex(tinygltf::Model& model, const Node* node)
{
    auto found = std::find(m_nodes.begin(), m_nodes.end(), node);
    if (found != m_nodes.end())
        return static_cast<int>(found - m_nodes.begin());
    tinygltf::Node n;
    n.name = node->getName().c_str();
    const vec3& t = node->getPosition();
    const vec3& s = node->getScale();
    GltfRotation::Quat q = GltfRotation::fromEuler(dvec3(node->getRotation().x, node->getRotation().y, node->getRotation().z));
    n.translation = {t.x, t.y, t.z};
    n.rotation = {q.x, q.y, q.z, q.w};
    n.scale = {s.x, s.y, s.z};
    model.nodes.push_back(n);
    m_nodes.push_back(node);
    return static_cast<int>(m_nodes.size()) - 1;
}

bool GltfExport::save(const tinygltf::Model& model, const std::string& path)
{
    tinygltf::TinyGLTF writer;
    std::ostringstream out;
    if (!writer.WriteGltfSceneToStream(&model, out, true, endsWith(path, ".glb"))) {
        m_error = path + ": the glTF library could not write the animation";
        return false;
    }
    std::string bytes = out.str();
    AtomicFile file(path.c_str());
    if (!file.open() || !file.write(bytes.data(), bytes.size()) || !file.commit()) {
        m_error = path + ": " + file.getReason();
        return false;
    }
    return true;
}
