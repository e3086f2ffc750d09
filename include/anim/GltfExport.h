#pragma once

#include <string>
#include <vector>

class GltfChannel;
class Node;
class Track;
class TrackParameter;
class World;
namespace tinygltf {
struct Model;
}

// Writes the node positions, rotations and scales of a track as one glTF 2.0 animation (.gltf with
// its buffer embedded, or .glb), as docs/gltf.md describes: constant and linear keys as STEP and
// LINEAR samplers, Bezier keys whose handles sit at thirds as CUBICSPLINE, every other curve
// resampled to LINEAR keys within RESAMPLE_TOLERANCE, rotations as quaternions. Each animated
// scene node becomes a glTF node of the same name that rests where the scene has it.
class GltfExport {
public:
    // The largest distance, in the parameter's units, between a resampled position or scale and
    // the track's curve at the quarter points of every resampled segment.
    static constexpr double RESAMPLE_TOLERANCE = 1e-4;
    // The same bound for resampled rotations, in degrees.
    static constexpr double ROTATION_TOLERANCE = 0.01;

    // Names the animation written (the track file's name is a good one).
    void setName(const std::string& name) { m_name = name; }
    // Names the track in errors about its parameters (the track file's path).
    void setSource(const std::string& source) { m_source = source; }

    // Writes track (whose parameters are bound by node name to world) to path atomically, the
    // format chosen by the extension (.glb binary, else .gltf). Returns false with "source: problem"
    // in getError() when nothing can be exported or a parameter's node is not in world, and with
    // "path: reason" when the file cannot be written; the file on disk is then as it was.
    bool write(const Track& track, const World& world, const std::string& path);

    const std::string& getError() const { return m_error; }
    // The parameters that glTF cannot carry (and were left out), one line each.
    const std::vector<std::string>& getWarnings() const { return m_warnings; }

private:
    // Adds the channel of parameter p to the model, or a warning why not. Returns false on error.
    bool addParameter(tinygltf::Model& model, const TrackParameter* p, const World& world);
    // Returns the index of the glTF node for a scene node, adding it on first use.
    int nodeIndex(tinygltf::Model& model, const Node* node);
    bool save(const tinygltf::Model& model, const std::string& path);

    std::string m_name = "animation";
    std::string m_source = "track";
    std::string m_error;
    std::vector<std::string> m_warnings;
    std::vector<const Node*> m_nodes;
};
