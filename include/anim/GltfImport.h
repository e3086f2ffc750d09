#pragma once

#include <string>
#include <vector>

class GltfCurve;
class Track;
class TrackParameter;
class World;
namespace tinygltf {
struct Model;
}

// Turns one animation of a glTF 2.0 file (.gltf with embedded or external buffers, or .glb) into
// track parameters, as docs/gltf.md describes: node translations and scales become Node.position and
// Node.scale with the same keys (STEP constant, LINEAR linear, CUBICSPLINE Bezier keys with handles
// at thirds that evaluate to the same spline), and rotations become Node.rotation in continuous
// Euler degrees sampled at a frame rate. Read first, then hand the parameters to a track, so that a
// file that cannot be read leaves the track as it was.
class GltfImport {
public:
    // The frame rate rotations are sampled at unless setFrameRate says otherwise.
    static constexpr float DEFAULT_FRAME_RATE = 60.0f;
    // The largest angle, in degrees, between a sampled rotation and the glTF rotation at a frame.
    static constexpr double ROTATION_TOLERANCE = 0.01;

    GltfImport() = default;
    ~GltfImport();
    GltfImport(const GltfImport&) = delete;
    GltfImport& operator=(const GltfImport&) = delete;

    // Picks the animation by name, or by index when the text is a number; empty picks the first.
    void setAnimation(const std::string& nameOrIndex) { m_animation = nameOrIndex; }
    // Binds each parameter to the scene node of the glTF node's name (null leaves them unbound and
    // named after the glTF nodes).
    void setWorld(World* world) { m_world = world; }
    // Samples rotations at this many frames per second (values of 0 or less are ignored).
    void setFrameRate(float fps);

    // Reads the file and builds its parameters (dropping those of an earlier read). Returns false
    // with "path: problem" in getError() when the file is not glTF, a buffer is missing, an accessor
    // or sampler is malformed, or a node cannot be bound; nothing is built then.
    bool read(const std::string& path);
    // Appends the parameters built by read to track (which takes them) and stretches the track's
    // end to the last key. Returns how many were added.
    int addTo(Track& track);

    const std::string& getError() const { return m_error; }
    // Channels that were skipped (morph weights, channels without a node), one line each.
    const std::vector<std::string>& getWarnings() const { return m_warnings; }

private:
    bool load(const std::string& path, tinygltf::Model& model);
    int pickAnimation(const tinygltf::Model& model);
    bool readChannel(const tinygltf::Model& model, int animation, int channel);
    // Returns the scene node id a glTF node binds to (-1 without a world), or -2 when the world
    // has no node of that name that typeName animates.
    int bind(const std::string& nodeName, const char* typeName);
    TrackParameter* makeVector(const GltfCurve& curve);
    TrackParameter* makeRotation(const GltfCurve& curve);
    // Returns the times rotations are sampled at: both ends and every frame between them.
    std::vector<float> frames(float first, float last) const;
    void clear();

    std::string m_animation;
    World* m_world = nullptr;
    float m_frame_rate = DEFAULT_FRAME_RATE;
    std::string m_path;
    std::string m_error;
    std::vector<std::string> m_warnings;
    std::vector<TrackParameter*> m_parameters;
    float m_end = 0.0f;
};
