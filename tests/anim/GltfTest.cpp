#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "../../engine/anim/TinyGltf.h"
#include "anim/GltfExport.h"
#include "anim/GltfImport.h"
#include "anim/Track.h"
#include "anim/TrackParameterVec3.h"
#include "scene/NodeType.h"
#include "scene/World.h"
#include "support/Scenario.h"

namespace {

// How a channel's output values are stored in the test file.
enum Encoding { FLOATS, SHORTS_STRIDED, SPARSE };

struct Channel {
    const char* path;
    const char* interpolation;
    std::vector<float> times;
    // Per key the value, or for CUBICSPLINE the in-tangent, value and out-tangent.
    std::vector<float> values;
    Encoding encoding = FLOATS;
};

// Channel i animates node "n<i>". Keys: very unequal intervals, a near-duplicate pair, asymmetric
// tangents, a rotation spinning past 360 degrees about z.
//
//   t:  0     0.4 0.40001           3.0  3.05
//       x-----x-x-------------------x----x
const std::vector<Channel> k_channels = {
    {"translation", "CUBICSPLINE", {0.0f, 0.4f, 0.40001f, 3.0f, 3.05f},
     {0, 0, 0, 1, 2, 3, 4, -1, 0.5f,                //
      -3, 2, 1, 2, 2.5f, 3, 0.5f, -6, 2,            //
      9, 1, -1, 2.1f, 2.5f, 3.2f, -4, 0, 7,         //
      0.2f, 0.1f, 0, -1, 0, 1, 1.5f, 2, -3,         //
      5, -5, 5, 0, 1, 0.5f, 0, 0, 0}},
    {"scale", "STEP", {0.1f, 0.5f, 2.0f}, {1, 1, 1, 2, 0.5f, 1, 3, 3, 0.25f}},
    {"translation", "LINEAR", {0.0f, 0.001f, 2.0f}, {0, 0, 0, 5, -1, 2, 4, 4, 4}, SPARSE},
    {"rotation", "LINEAR", {0.0f, 1.0f, 2.0f, 3.0f},
     {0, 0, 0, 1, 0, 0, 0.9961947f, 0.0871557f, 0, 0, 0.1736482f, -0.9848078f, 0, 0, -0.9659258f, -0.2588190f},
     SHORTS_STRIDED},
    {"rotation", "CUBICSPLINE", {0.5f, 0.75f, 2.5f},
     {0, 0, 0, 0, 0, 0, 0, 1, 0.3f, -0.2f, 0.1f, 0,       //
      0.1f, 0.2f, 0, 0, 0.5f, 0.5f, 0.5f, 0.5f, -1, 0, 0.4f, 0.2f, //
      0, 0, 0, 0, 0, 0.7071068f, 0, 0.7071068f, 0, 0, 0, 0}},
    {"rotation", "STEP", {0.0f, 1.0f}, {0, 0, 0, 1, 0, 0, 1, 0}},
};

// The name of the node that channel i animates.
std::string nodeName(size_t i)
{
    std::string name = "n";
    return name.append(std::to_string(i));
}

std::string base64(const std::vector<unsigned char>& bytes)
{
    static const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        size_t left = bytes.size() - i;
        unsigned v = bytes[i] << 16 | (left > 1 ? bytes[i + 1] << 8 : 0) | (left > 2 ? bytes[i + 2] : 0);
        for (size_t d = 0; d < 4; ++d)
            out += d <= left ? digits[(v >> (18 - 6 * d)) & 63] : '=';
    }
    return out;
}

// Builds a .gltf document of channels with one embedded buffer, writing each accessor as its
// encoding asks.
class Asset {
public:
    std::string build(const std::vector<Channel>& channels)
    {
        std::string nodes, samplers, targets;
        for (size_t i = 0; i < channels.size(); ++i) {
            const Channel& c = channels[i];
            int width = std::string(c.path) == "rotation" ? 4 : 3;
            int input = floats(c.times, 1, "\"min\": [" + std::to_string(c.times.front()) + "], \"max\": [" +
                                                 std::to_string(c.times.back()) + "], ");
            int output = c.encoding == FLOATS ? floats(c.values, width, "")
                                              : (c.encoding == SPARSE ? sparse(c.values, width) : shorts(c.values));
            std::string sep = i ? ", " : "";
            nodes += sep + "{\"name\": \"" + nodeName(i) + "\"}";
            samplers += sep + "{\"input\": " + std::to_string(input) + ", \"output\": " + std::to_string(output) +
                        ", \"interpolation\": \"" + c.interpolation + "\"}";
            targets += sep + "{\"sampler\": " + std::to_string(i) + ", \"target\": {\"node\": " + std::to_string(i) +
                       ", \"path\": \"" + c.path + "\"}}";
        }
        return "{\"asset\": {\"version\": \"2.0\"}, \"nodes\": [" + nodes + "], \"buffers\": [{\"byteLength\": " +
               std::to_string(m_data.size()) + ", \"uri\": \"data:application/octet-stream;base64," + base64(m_data) +
               "\"}], \"bufferViews\": [" + m_views + "], \"accessors\": [" + m_accessors +
               "], \"animations\": [{\"name\": \"take\", \"samplers\": [" + samplers + "], \"channels\": [" + targets +
               "]}]}";
    }

private:
    int view(const void* data, size_t size, int stride)
    {
        size_t offset = m_data.size();
        m_data.resize(offset + size + (4 - size % 4) % 4);
        std::memcpy(m_data.data() + offset, data, size);
        m_views += std::string(m_count_views ? ", " : "") + "{\"buffer\": 0, \"byteOffset\": " + std::to_string(offset) +
                   ", \"byteLength\": " + std::to_string(size) +
                   (stride ? ", \"byteStride\": " + std::to_string(stride) : "") + "}";
        return m_count_views++;
    }
    int accessor(const std::string& fields)
    {
        m_accessors += std::string(m_count_accessors ? ", " : "") + "{" + fields + "}";
        return m_count_accessors++;
    }
    static const char* type(int width) { return width == 1 ? "SCALAR" : (width == 3 ? "VEC3" : "VEC4"); }
    int floats(const std::vector<float>& v, int width, const std::string& extra)
    {
        int at = view(v.data(), v.size() * 4, 0);
        return accessor(extra + "\"bufferView\": " + std::to_string(at) + ", \"componentType\": 5126, \"count\": " +
                        std::to_string(v.size() / width) + ", \"type\": \"" + type(width) + "\"");
    }
    // Normalised shorts, 8 bytes of a quaternion in every 12.
    int shorts(const std::vector<float>& v)
    {
        std::vector<int16_t> packed;
        for (size_t i = 0; i < v.size(); ++i) {
            packed.push_back(static_cast<int16_t>(std::lround(v[i] * 32767.0f)));
            if (i % 4 == 3)
                packed.insert(packed.end(), {0, 0});
        }
        int at = view(packed.data(), packed.size() * 2 - 4, 12);
        return accessor("\"bufferView\": " + std::to_string(at) + ", \"componentType\": 5122, \"normalized\": true, "
                        "\"count\": " + std::to_string(v.size() / 4) + ", \"type\": \"VEC4\"");
    }
    // Zeros for element 1 in the base data, its value in the sparse part.
    int sparse(const std::vector<float>& v, int width)
    {
        std::vector<float> base(v);
        std::fill_n(base.begin() + width, width, 0.0f);
        int at = view(base.data(), base.size() * 4, 0);
        uint8_t index = 1;
        int indices = view(&index, 1, 0);
        int values = view(v.data() + width, static_cast<size_t>(width) * 4, 0);
        return accessor("\"bufferView\": " + std::to_string(at) + ", \"componentType\": 5126, \"count\": " +
                        std::to_string(v.size() / width) + ", \"type\": \"" + type(width) +
                        "\", \"sparse\": {\"count\": 1, \"indices\": {\"bufferView\": " + std::to_string(indices) +
                        ", \"componentType\": 5121}, \"values\": {\"bufferView\": " + std::to_string(values) + "}}");
    }

    std::vector<unsigned char> m_data;
    std::string m_views, m_accessors;
    int m_count_views = 0, m_count_accessors = 0;
};

// The value at t of a sampler, written from glTF 2.0's own interpolation formulas: STEP holds,
// LINEAR interpolates (rotations by slerp), CUBICSPLINE is the Hermite spline (rotations
// normalised); before the first key the first value, after the last the last.
std::vector<double> reference(const Channel& c, double t)
{
    size_t w = std::string(c.path) == "rotation" ? 4 : 3, n = c.times.size(), per = c.interpolation[0] == 'C' ? 3 : 1;
    auto at = [&](size_t k, size_t part, size_t i) {
        double v = c.values[(k * per + part) * w + i];
        return c.encoding == SHORTS_STRIDED ? std::round(v * 32767.0) / 32767.0 : v;
    };
    size_t mid = per == 3 ? 1 : 0;
    size_t k = 0;
    while (k + 1 < n && c.times[k + 1] <= t)
        ++k;
    std::vector<double> v(w);
    double td = k + 1 < n ? static_cast<double>(c.times[k + 1]) - c.times[k] : 1.0;
    double u = std::clamp((t - c.times[k]) / td, 0.0, 1.0);
    if (t < c.times[0] || k + 1 == n || c.interpolation[0] == 'S')
        u = 0.0;
    double dot = 0.0, a = 0.0;
    for (size_t i = 0; i < w; ++i)
        dot += at(k, mid, i) * at(std::min(k + 1, n - 1), mid, i);
    a = std::acos(std::min(std::fabs(dot), 1.0));
    for (size_t i = 0; i < w; ++i) {
        double v0 = at(k, mid, i), v1 = at(std::min(k + 1, n - 1), mid, i);
        if (per == 3 && u > 0.0)
            v[i] = (2 * u * u * u - 3 * u * u + 1) * v0 + td * (u * u * u - 2 * u * u + u) * at(k, 2, i) +
                   (-2 * u * u * u + 3 * u * u) * v1 + td * (u * u * u - u * u) * at(k + 1, 0, i);
        else if (w == 4 && a > 1e-9)
            v[i] = std::sin(a * (1 - u)) / std::sin(a) * v0 + (dot < 0 ? -1 : 1) * std::sin(a * u) / std::sin(a) * v1;
        else
            v[i] = (1 - u) * v0 + u * v1;
    }
    return v;
}

class GltfTest : public Scenario {
protected:
    std::string write(const std::string& name, const std::string& text)
    {
        EXPECT_TRUE(writeFileText(dir.file(name), text));
        return dir.file(name);
    }
    // Imports a file into track; returns the error ("" on success).
    std::string import(const std::string& path, Track& track, World* world = nullptr)
    {
        GltfImport importer;
        importer.setWorld(world);
        if (!importer.read(path))
            return importer.getError();
        importer.addTo(track);
        return "";
    }
    // Expects key k of two rotations to turn alike, to a millionth of a radian.
    static void expectSameTurn(const TrackParameterVec3& a, const TrackParameterVec3& b, int k)
    {
        auto euler = [k](const TrackParameterVec3& p) {
            return vec3(p.getComponent(0)->getKey(k).value, p.getComponent(1)->getKey(k).value,
                        p.getComponent(2)->getKey(k).value);
        };
        mat4 ra = mat4::rotateEuler(euler(a)), rb = mat4::rotateEuler(euler(b));
        for (int e = 0; e < 16; ++e)
            EXPECT_NEAR(ra.m[e], rb.m[e], 1e-6f) << k;
    }
    static const TrackParameterVec3& vector(const Track& track, int i)
    {
        return *static_cast<const TrackParameterVec3*>(track.getParameter(i));
    }

    TempDir dir;
};

TEST_F(GltfTest, ImportedCurvesMatchTheGltfSamplers)
{
    Track track;
    ASSERT_EQ(import(write("take.gltf", Asset().build(k_channels)), track), "");
    ASSERT_EQ(track.getNumParameters(), static_cast<int>(k_channels.size()));
    for (size_t i = 0; i < k_channels.size(); ++i) {
        const Channel& c = k_channels[i];
        SCOPED_TRACE(std::string(c.path) + " " + c.interpolation);
        const TrackParameterVec3& p = vector(track, static_cast<int>(i));
        EXPECT_STREQ(p.getNodeName().c_str(), nodeName(i).c_str());
        if (std::string(c.path) != "rotation") {
            for (double t = -0.1; t < 3.2; t += 0.00037) {
                std::vector<double> expected = reference(c, static_cast<float>(t));
                for (int k = 0; k < 3; ++k) {
                    bool found = false;
                    ASSERT_NEAR(p.getComponent(k)->getTrackValue(static_cast<float>(t), found), expected[k], 1e-5) << t;
                }
            }
            continue;
        }
        // Every frame: the Euler angles turn the same way as the glTF quaternion, and no angle
        // jumps between frames.
        for (int f = 0; f < p.getComponent(0)->getNumKeys(); ++f) {
            float t = p.getComponent(0)->getKey(f).time;
            vec3 euler(p.getComponent(0)->getKey(f).value, p.getComponent(1)->getKey(f).value,
                       p.getComponent(2)->getKey(f).value);
            std::vector<double> q = reference(c, t);
            double n = std::sqrt(q[0] * q[0] + q[1] * q[1] + q[2] * q[2] + q[3] * q[3]);
            double x = q[0] / n, y = q[1] / n, z = q[2] / n, w = q[3] / n;
            double m[3][3] = {{1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)},
                              {2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)},
                              {2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)}};
            mat4 r = mat4::rotateEuler(euler);
            for (int row = 0; row < 3; ++row) {
                for (int col = 0; col < 3; ++col)
                    ASSERT_NEAR(r.at(row, col), m[row][col], GltfImport::ROTATION_TOLERANCE * 0.0175) << t;
            }
            for (int k = 0; k < 3 && f > 0 && c.interpolation[0] != 'S'; ++k)
                ASSERT_LT(std::fabs(euler[k] - p.getComponent(k)->getKey(f - 1).value), 20.0f) << t;
        }
    }
    // The spin about z goes on past 360 degrees instead of jumping back.
    EXPECT_NEAR(vector(track, 3).getComponent(2)->getKeys().back().value, 510.0f, 0.01f);
    EXPECT_NEAR(track.getEndTime(), 3.05f, 1e-6f);
}

TEST_F(GltfTest, ExportThenImportGivesTheSameKeys)
{
    Track first, second;
    ASSERT_EQ(import(write("take.gltf", Asset().build(k_channels)), first), "");
    World world;
    for (size_t i = 0; i < k_channels.size(); ++i)
        world.addNode(NODE_DUMMY, nodeName(i).c_str());
    GltfExport exporter;
    for (const char* name : {"again.gltf", "again.glb"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(exporter.write(first, world, dir.file(name))) << exporter.getError();
        EXPECT_TRUE(exporter.getWarnings().empty());
        second.release();
        ASSERT_EQ(import(dir.file(name), second, &world), "");
        ASSERT_EQ(second.getNumParameters(), first.getNumParameters());
        for (int i = 0; i < first.getNumParameters(); ++i) {
            const TrackParameterVec3& a = vector(first, i);
            const TrackParameterVec3& b = vector(second, i);
            for (int c = 0; c < 3; ++c) {
                ASSERT_EQ(a.getComponent(c)->getNumKeys(), b.getComponent(c)->getNumKeys()) << i;
                for (int k = 0; k < a.getComponent(c)->getNumKeys(); ++k) {
                    const TrackKeyFloat& ka = a.getComponent(c)->getKey(k);
                    const TrackKeyFloat& kb = b.getComponent(c)->getKey(k);
                    EXPECT_EQ(ka.time, kb.time);
                    EXPECT_EQ(ka.type, kb.type);
                    for (int h = 0; h < 4; ++h)
                        EXPECT_NEAR(ka.tangents[h], kb.tangents[h], 1e-5f * (1 + std::fabs(ka.tangents[h])));
                    // Near gimbal lock Euler angles swing on float rounding: rotations compare as turns.
                    if (a.getTypeName() != jString("Node.rotation"))
                        EXPECT_NEAR(ka.value, kb.value, 1e-6f * (1 + std::fabs(ka.value))) << i << " " << k;
                    else if (c == 0)
                        expectSameTurn(a, b, k);
                }
            }
        }
    }
}

TEST_F(GltfTest, ExportedFilesHoldTheBoundsGltfRequires)
{
    Track track;
    ASSERT_TRUE(track.loadFile(KUVO_DATA_DIR "/samples/demo.anim", nullptr));
    World world;
    ASSERT_TRUE(world.load(KUVO_DATA_DIR "/samples/demo.world"));
    GltfExport exporter;
    ASSERT_TRUE(exporter.write(track, world, dir.file("demo.glb"))) << exporter.getError();
    EXPECT_EQ(exporter.getWarnings().size(), 11u);
    tinygltf::Model model;
    tinygltf::TinyGLTF loader;
    std::string error, warning;
    ASSERT_TRUE(loader.LoadBinaryFromFile(&model, &error, &warning, dir.file("demo.glb"))) << error;
    ASSERT_EQ(model.animations.size(), 1u);
    for (const tinygltf::AnimationSampler& s : model.animations[0].samplers) {
        const tinygltf::Accessor& in = model.accessors[s.input];
        size_t per = s.interpolation == "CUBICSPLINE" ? 3 : 1;
        EXPECT_EQ(model.accessors[s.output].count, in.count * per);
        for (int index : {s.input, s.output}) {
            const tinygltf::Accessor& a = model.accessors[index];
            const tinygltf::BufferView& v = model.bufferViews[a.bufferView];
            int width = tinygltf::GetNumComponentsInType(a.type);
            ASSERT_EQ(a.componentType, TINYGLTF_COMPONENT_TYPE_FLOAT);
            ASSERT_LE(a.byteOffset + a.count * width * 4, v.byteLength);
            ASSERT_LE(v.byteOffset + v.byteLength, model.buffers[v.buffer].data.size());
            const float* data = reinterpret_cast<const float*>(model.buffers[v.buffer].data.data() + v.byteOffset);
            for (int c = 0; c < width; ++c) {
                double lo = data[c], hi = data[c];
                for (size_t e = 0; e < a.count; ++e) {
                    lo = std::min<double>(lo, data[e * width + c]);
                    hi = std::max<double>(hi, data[e * width + c]);
                    if (index == s.input && e > 0) {
                        ASSERT_GT(data[e], data[e - 1]);
                    }
                }
                EXPECT_EQ(a.minValues.at(c), lo);
                EXPECT_EQ(a.maxValues.at(c), hi);
            }
        }
    }
}

TEST_F(GltfTest, BadFilesAreRefusedWithTheirProblem)
{
    std::vector<Channel> unequal = {k_channels[1]};
    unequal[0].values.pop_back();
    std::vector<Channel> unsorted = {k_channels[1]};
    unsorted[0].times = {0.1f, 0.5f, 0.5f};
    std::string good = Asset().build({k_channels[1]});
    struct Case {
        std::string text;
        const char* problem;
    } cases[] = {
        {"not a glTF file", "not a readable glTF file"},
        {good.substr(0, good.find("data:")) + "missing.bin\"}]" + good.substr(good.find("], \"bufferViews\"") + 1),
         "missing.bin"},
        {Asset().build(unequal), "3 key times but 2 output values"},
        {Asset().build(unsorted), "key time 2 (0.5) does not come after 0.5"},
        {good, "the scene has no node \"n0\""},
    };
    World world;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.problem);
        Track track;
        std::string path = write("bad.gltf", c.text);
        std::string error = import(path, track, &world);
        EXPECT_EQ(error.rfind(path + ": ", 0), 0u) << error;
        EXPECT_NE(error.find(c.problem), std::string::npos) << error;
        EXPECT_EQ(track.getNumParameters(), 0);
    }
}

} // namespace
