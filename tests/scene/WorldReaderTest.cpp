#include "scene/WorldReader.h"

#include <string>

#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/Scenario.h"

// Reading .world files through World::load: defaults, ignored fields, and every kind of refusal.
class WorldReaderTest : public Scenario {
protected:
    // Writes text to name in the temporary folder and returns the path.
    std::string file(const std::string& name, const std::string& text)
    {
        std::string path = m_dir.file(name);
        EXPECT_TRUE(writeFileText(path, text));
        return path;
    }

    // Returns "line:column" of the first occurrence of marker in text (1-based, bytes).
    static std::string positionOf(const std::string& text, const std::string& marker)
    {
        size_t at = text.find(marker);
        EXPECT_NE(at, std::string::npos) << marker;
        int line = 1;
        size_t line_start = 0;
        for (size_t i = 0; i < at; ++i) {
            if (text[i] == '\n') {
                ++line;
                line_start = i + 1;
            }
        }
        return std::to_string(line) + ":" + std::to_string(at - line_start + 1);
    }

    // Loads text into a world that already holds one node and one material, expects the load to
    // fail with "bad.world:<position of marker>: reason", and checks that nothing changed.
    void expectRefused(const std::string& text, const std::string& marker, const std::string& reason)
    {
        World world;
        ASSERT_TRUE(world.load(file("good.world", GOOD).c_str()));
        Node* kept = world.getNodeByID(3);
        std::string path = file("bad.world", text);
        EXPECT_FALSE(world.load(path.c_str()));
        expectLogged("World::load:" + path + ":" + positionOf(text, marker) + ": " + reason);
        ASSERT_EQ(world.getNumNodes(), 1);
        EXPECT_EQ(world.getNode(0), kept);
        EXPECT_EQ(kept->getName(), "Kept");
        MaterialManager* materials = Engine::get()->getMaterialManager();
        ASSERT_EQ(materials->getNumMaterials(), 1);
        EXPECT_EQ(materials->getMaterial(0)->getName(), "kept");
    }

    static constexpr const char* GOOD =
        R"({"format": "kuvo.world", "version": 1,
 "materials": [{"name": "kept"}],
 "nodes": [{"id": 3, "name": "Kept", "type": "NodeDummy"}]})";

    TempDir m_dir;
};

TEST_F(WorldReaderTest, MissingOptionalFieldsTakeTheirDefaults)
{
    World world;
    ASSERT_TRUE(world.load(file("min.world", R"({"format": "kuvo.world", "version": 1,
 "materials": [{"name": "plain"}],
 "nodes": [{"id": 0, "name": "L", "type": "LightPoint"},
           {"id": 1, "name": "C", "type": "Camera"},
           {"id": 2, "name": "M", "type": "ObjectMesh"},
           {"id": 3, "name": "P", "type": "ObjectPrefab"}]})")
                               .c_str()));
    Node* light = world.getNodeByID(0);
    EXPECT_TRUE(light->isEnabled());
    EXPECT_EQ(light->getPosition(), vec3(0.0f, 0.0f, 0.0f));
    EXPECT_EQ(light->getScale(), vec3(1.0f, 1.0f, 1.0f));
    EXPECT_EQ(light->getLightColor(), vec4(1.0f, 1.0f, 1.0f, 1.0f));
    EXPECT_EQ(light->getLightIntensity(), 1.0f);
    EXPECT_EQ(world.getNodeByID(1)->getCameraFov(), 60.0f);
    EXPECT_TRUE(world.getNodeByID(2)->getMesh().empty());
    EXPECT_EQ(world.getNodeByID(3)->getNumInternalNodes(), 0);
    EXPECT_EQ(world.getExposure(), 1.0);
    Material* plain = Engine::get()->getMaterialManager()->get("plain");
    ASSERT_NE(plain, nullptr);
    EXPECT_EQ(plain->getNumParameters(), 0);
}

TEST_F(WorldReaderTest, UnknownFieldsAreIgnored)
{
    World world;
    ASSERT_TRUE(world.load(file("extra.world", R"({"format": "kuvo.world", "version": 1, "author": "someone",
 "render": {"exposure": 2, "bloom": [1, 2]},
 "materials": [{"name": "m", "shader": "pbr", "parameters": [
    {"tag": "t", "type": 0, "components": 1, "value": [3], "ui": {"min": 0}}]}],
 "nodes": [{"id": 5, "name": "N", "type": "Camera", "layer": 4, "light": {"color": "ignored"},
            "camera": {"fov": 30, "near": 0.1}}]})")
                               .c_str()));
    EXPECT_EQ(world.getExposure(), 2.0);
    EXPECT_EQ(world.getNodeByID(5)->getCameraFov(), 30.0f);
    Material* m = Engine::get()->getMaterialManager()->get("m");
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->getParameter(0)->getValue(), vec4(3.0f, 0.0f, 0.0f, 0.0f));
}

TEST_F(WorldReaderTest, SyntaxErrorsNameFileLineAndColumn)
{
    World world;
    std::string path = file("syntax.world", "{\"format\": \"kuvo.world\",\n \"version\": 1,,\n}");
    EXPECT_FALSE(world.load(path.c_str()));
    expectLogged(path + ":2:");
}

TEST_F(WorldReaderTest, RefusesBadHeaders)
{
    expectRefused(R"({"version": 1})", "{", "missing field \"format\"");
    expectRefused(R"({"format": "kuvo.world"})", "{", "missing field \"version\"");
    expectRefused(R"({"format": "kuvo.track", "version": 1})", "\"kuvo.track",
                  "\"format\" is \"kuvo.track\", expected \"kuvo.world\"");
    expectRefused(R"({"format": "kuvo.world", "version": 2})", "2}",
                  "\"version\" 2 is not supported (this build reads 1 to 1)");
    expectRefused(R"({"format": "kuvo.world", "version": "1"})", "\"1\"",
                  "\"version\" must be a whole number, not a string");
    expectRefused(R"([1, 2])", "[", "the document must be an object, not an array");
    expectRefused(R"({"format": "kuvo.world", "version": 1, "render": {"exposure": "bright"}})", "\"bright\"",
                  "\"exposure\" must be a number, not a string");
    expectRefused(R"({"format": "kuvo.world", "version": 1, "render": {"fog_color": [1, 1, 1]}})", "[1, 1, 1]",
                  "\"fog_color\" must be an array of 4 numbers");
}

TEST_F(WorldReaderTest, RefusesBadNodes)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"nodes\": [\n";
    expectRefused(head + R"(  {"name": "A", "type": "NodeDummy"}]})", "{\"name\": \"A\"",
                  "nodes[0]: missing field \"id\"");
    expectRefused(head + R"(  {"id": 1, "type": "NodeDummy"}]})", "{\"id\": 1",
                  "nodes[0]: missing field \"name\"");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "Teapot"}]})", "\"Teapot\"",
                  "nodes[0]: unknown node type \"Teapot\"");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "EditorCamera"}]})", "\"EditorCamera\"",
                  "nodes[0]: unknown node type \"EditorCamera\"");
    expectRefused(head + R"(  {"id": 1.5, "name": "A", "type": "NodeDummy"}]})", "1.5",
                  "nodes[0]: \"id\" must be a whole number, not 1.5");
    expectRefused(head + R"(  {"id": -4, "name": "A", "type": "NodeDummy"}]})", "-4",
                  "nodes[0]: node id -4 is out of range");
    expectRefused(head + R"(  {"id": 1, "name": 7, "type": "NodeDummy"}]})", "7,",
                  "nodes[0]: \"name\" must be a string, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "enabled": 1}]})", "1}",
                  "nodes[0]: \"enabled\" must be true or false, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "position": [1, 2]}]})", "[1, 2]",
                  "nodes[0]: \"position\" must be an array of 3 numbers");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "scale": [1, null, 1]}]})", "null",
                  "nodes[0]: every element of \"scale\" must be a number, not null");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "rotation": [1e39, 0, 0]}]})", "1e39",
                  "nodes[0]: \"rotation\" holds 1e+39, which is out of the float range");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "LightSpot", "light": {"intensity": "x"}}]})", "\"x\"",
                  "nodes[0]: \"intensity\" must be a number, not a string");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "Camera", "camera": 60}]})", "60",
                  "nodes[0]: \"camera\" must be an object, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "ObjectMesh", "mesh": ["a"]}]})", "[\"a\"]",
                  "nodes[0]: \"mesh\" must be a string, not an array");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy"}, 4]})", "4]",
                  "nodes[1]: a node must be an object, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy"}, {"id": 1, "name": "B", "type": "NodeDummy"}]})",
                  "1, \"name\": \"B\"", "nodes[1]: node id 1 is used twice");
}

TEST_F(WorldReaderTest, RefusesBadPrefabs)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"nodes\": [\n";
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "internal": []}]})", "[]",
                  "nodes[0]: only ObjectPrefab nodes have \"internal\" nodes");
    expectRefused(head + R"(  {"id": 1, "name": "P", "type": "ObjectPrefab", "internal": {}}]})", "{}",
                  "nodes[0]: \"internal\" must be an array, not an object");
    expectRefused(head + R"(  {"id": 1, "name": "P", "type": "ObjectPrefab", "internal": [
    {"id": 2, "name": "In", "type": "NodeDummy"},
    {"id": 3, "type": "NodeDummy"}]}]})",
                  "{\"id\": 3", "nodes[0].internal[1]: missing field \"name\"");
    expectRefused(head + R"(  {"id": 1, "name": "P", "type": "ObjectPrefab", "internal": [
    {"id": 2, "name": "In", "type": "NodeDummy"}]},
  {"id": 2, "name": "Out", "type": "NodeDummy"}]})",
                  "2, \"name\": \"Out\"", "nodes[1]: node id 2 is used twice");
}

TEST_F(WorldReaderTest, RefusesBadMaterials)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"materials\": [\n";
    expectRefused(head + R"(  {"parent": "x"}]})", "{\"parent\"", "materials[0]: missing field \"name\"");
    expectRefused(head + R"(  {"name": ""}]})", "\"\"", "materials[0]: a material needs a name");
    expectRefused(head + R"(  {"name": "a"}, {"name": "a"}]})", "\"a\"}]", "materials[1]: material \"a\" is defined twice");
    expectRefused(head + R"(  {"name": "child", "parent": "base"}, {"name": "base"}]})", "\"base\"}",
                  "materials[0]: parent material \"base\" is not defined before \"child\"");
    expectRefused(head + R"(  {"name": "a", "parameters": {}}]})", "{}",
                  "materials[0]: \"parameters\" must be an array, not an object");
}

TEST_F(WorldReaderTest, RefusesBadMaterialParameters)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"materials\": [{\"name\": \"m\", \"parameters\": [\n";
    expectRefused(head + R"(  {"type": 0, "components": 1, "value": [1]}]}]})", "{\"type\"",
                  "materials[0]: missing field \"tag\"");
    expectRefused(head + R"(  {"tag": "t", "components": 1, "value": [1]}]}]})", "{\"tag\"",
                  "materials[0]: missing field \"type\"");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 1}]}]})", "{\"tag\"",
                  "materials[0]: missing field \"value\"");
    expectRefused(head + R"(  {"tag": "t", "type": 11, "components": 1, "value": [1]}]}]})", "11",
                  "materials[0]: parameter \"t\": type code 11 is not 0 to 10");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 5, "value": [1, 2, 3, 4, 5]}]}]})", "5,",
                  "materials[0]: parameter \"t\": 5 components, expected 1 to 4");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 3, "value": [1, 2]}]}]})", "[1, 2]",
                  "materials[0]: \"value\" must be an array of 3 numbers");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 1, "value": 1}]}]})", "1}",
                  "materials[0]: \"value\" must be an array of 1 numbers");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 1, "value": [1]},
  {"tag": "t", "type": 2, "components": 1, "value": [1]}]}]})",
                  "\"t\", \"type\": 2", "materials[0]: parameter \"t\" is defined twice");
    expectRefused(head + R"(  {"tag": "t", "type": 0, "components": 1, "value": [1]}]},
  {"name": "d", "parent": "m", "parameters": [{"tag": "t", "type": 0, "components": 2, "value": [1, 2]}]}]})",
                  "{\"tag\": \"t\", \"type\": 0, \"components\": 2",
                  "materials[1]: parameter \"t\" overrides the base's type 0 with 1 components; it must keep them");
}

TEST_F(WorldReaderTest, UntaggedParametersMayRepeat)
{
    World world;
    ASSERT_TRUE(world.load(file("untagged.world", R"({"format": "kuvo.world", "version": 1,
 "materials": [{"name": "m", "parameters": [
    {"tag": "", "type": 4, "components": 1, "value": [1]},
    {"tag": "", "type": 4, "components": 1, "value": [2]}]}]})")
                               .c_str()));
    Material* m = Engine::get()->getMaterialManager()->get("m");
    ASSERT_EQ(m->getNumParameters(), 2);
    EXPECT_EQ(m->getParameter(1)->getValue().x, 2.0f);
    EXPECT_EQ(m->findParameterIDByTag(""), -1);
}
