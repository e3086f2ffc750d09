#include "scene/WorldReader.h"

#include <string>

#include "SceneSamples.h"

// Reading .world files through World::load: what a file may leave out or add, and every refusal.
class WorldReaderTest : public Scenario {
protected:
    // Writes text to name in the temporary folder and returns the path.
    std::string file(const std::string& name, const std::string& text)
    {
        std::string path = m_dir.file(name);
        EXPECT_TRUE(writeFileText(path, text));
        return path;
    }

    // Expects loading text to fail with "World::load:<path>:<line>:<column>: <reason>" in the log,
    // the position being that of the offending value.
    void expectRefused(const std::string& text, const std::string& positionAndReason)
    {
        World world;
        std::string path = file("bad.world", text);
        EXPECT_FALSE(world.load(path.c_str()));
        expectLogged("World::load:" + path + ":" + positionAndReason);
        EXPECT_EQ(Engine::get()->getMaterialManager()->getNumMaterials(), 0);
    }

    TempDir m_dir;
};

// Optional fields may be left out and fields this build does not know are skipped, so files from
// newer builds still open; untagged parameters may repeat.
TEST_F(WorldReaderTest, UnknownFieldsAreIgnoredAndOptionalOnesMayBeMissing)
{
    World world;
    ASSERT_TRUE(world.load(file("new.world", R"({"format": "kuvo.world", "version": 1, "author": "someone",
 "render": {"exposure": 2, "bloom": [1, 2]},
 "materials": [{"name": "m", "shader": "pbr", "parameters": [
    {"tag": "", "type": 4, "components": 1, "value": [1]},
    {"tag": "", "type": 4, "components": 1, "value": [2], "ui": {"min": 0}}]}],
 "nodes": [{"id": 5, "name": "N", "type": "Camera", "layer": 4, "camera": {"fov": 30, "near": 0.1}},
           {"id": 6, "name": "L", "type": "LightPoint", "camera": {"fov": "ignored"}}]})")
                               .c_str()));
    EXPECT_EQ(world.getExposure(), 2.0);
    EXPECT_EQ(world.getNodeByID(5)->getCameraFov(), 30.0f);
    EXPECT_EQ(Engine::get()->getMaterialManager()->get("m")->getParameter(1)->getValue().x, 2.0f);
}

TEST_F(WorldReaderTest, SyntaxErrorsNameFileLineAndColumn)
{
    World world;
    std::string path = file("syntax.world", "{\"format\": \"kuvo.world\",\n \"version\": 1,,\n}");
    EXPECT_FALSE(world.load(path.c_str()));
    expectLogged(path + ":2:");
}

// A refusal names the file, the line and column of the bad value, its element and what is wrong.
TEST_F(WorldReaderTest, RefusesBadHeadersAndRenderSettings)
{
    expectRefused(R"({"format": "kuvo.world"})", "1:1: missing field \"version\"");
    expectRefused(R"({"format": "kuvo.track", "version": 1})",
                  "1:12: \"format\" is \"kuvo.track\", expected \"kuvo.world\"");
    expectRefused(R"({"format": "kuvo.world", "version": 2})",
                  "1:37: \"version\" 2 is not supported (this build reads 1 to 1)");
    expectRefused(R"({"format": "kuvo.world", "version": "1"})",
                  "1:37: \"version\" must be a whole number, not a string");
    expectRefused(R"([1, 2])", "1:1: the document must be an object, not an array");
    expectRefused(R"({"format": "kuvo.world", "version": 1, "render": {"exposure": "bright"}})",
                  "1:63: \"exposure\" must be a number, not a string");
    expectRefused(R"({"format": "kuvo.world", "version": 1, "render": {"fog_color": [1, 1, 1]}})",
                  "1:64: \"fog_color\" must be an array of 4 numbers");
}

TEST_F(WorldReaderTest, RefusesBadNodes)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"nodes\": [\n";
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "Teapot"}]})",
                  "3:34: nodes[0]: unknown node type \"Teapot\"");
    expectRefused(head + R"(  {"id": 1.5, "name": "A", "type": "NodeDummy"}]})",
                  "3:10: nodes[0]: \"id\" must be a whole number, not 1.5");
    expectRefused(head + R"(  {"id": -4, "name": "A", "type": "NodeDummy"}]})",
                  "3:10: nodes[0]: node id -4 is out of range");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "ObjectMesh", "mesh": ["a"]}]})",
                  "3:56: nodes[0]: \"mesh\" must be a string, not an array");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "enabled": 1}]})",
                  "3:58: nodes[0]: \"enabled\" must be true or false, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "scale": [1, null, 1]}]})",
                  "3:60: nodes[0]: every element of \"scale\" must be a number, not null");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "rotation": [1e39, 0, 0]}]})",
                  "3:60: nodes[0]: \"rotation\" holds 1e+39, which is out of the float range");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "LightSpot", "light": {"intensity": "x"}}]})",
                  "3:70: nodes[0]: \"intensity\" must be a number, not a string");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "Camera", "camera": 60}]})",
                  "3:54: nodes[0]: \"camera\" must be an object, not a number");
    expectRefused(head + R"(  {"id": 1, "name": "A", "type": "NodeDummy", "internal": []}]})",
                  "3:59: nodes[0]: only ObjectPrefab nodes have \"internal\" nodes");
    expectRefused(head + R"(  {"id": 1, "name": "P", "type": "ObjectPrefab", "internal": {}}]})",
                  "3:62: nodes[0]: \"internal\" must be an array, not an object");
    expectRefused(head + R"(  {"id": 1, "name": "P", "type": "ObjectPrefab", "internal": [
    {"id": 2, "name": "In", "type": "NodeDummy"}, {"id": 1, "name": "Twin", "type": "NodeDummy"}]}]})",
                  "4:58: nodes[0].internal[1]: node id 1 is used twice");
}

TEST_F(WorldReaderTest, RefusesBadMaterials)
{
    const std::string head = "{\"format\": \"kuvo.world\", \"version\": 1,\n \"materials\": [\n";
    expectRefused(head + R"(  {"parent": "x"}]})", "3:3: materials[0]: missing field \"name\"");
    expectRefused(head + R"(  {"name": ""}]})", "3:12: materials[0]: a material needs a name");
    expectRefused(head + R"(  {"name": "a"}, {"name": "a"}]})", "3:27: materials[1]: material \"a\" is defined twice");
    expectRefused(head + R"(  {"name": "child", "parent": "base"}, {"name": "base"}]})",
                  "3:31: materials[0]: parent material \"base\" is not defined before \"child\"");
    expectRefused(head + R"(  {"name": "a", "parameters": {}}]})",
                  "3:31: materials[0]: \"parameters\" must be an array, not an object");
    const std::string m = head + "  {\"name\": \"m\", \"parameters\": [\n";
    expectRefused(m + R"(  {"tag": "t", "components": 1, "value": [1]}]}]})",
                  "4:3: materials[0]: missing field \"type\"");
    expectRefused(m + R"(  {"tag": "t", "type": 11, "components": 1, "value": [1]}]}]})",
                  "4:24: materials[0]: parameter \"t\": type code 11 is not 0 to 10");
    expectRefused(m + R"(  {"tag": "t", "type": 0, "components": 5, "value": [1, 2, 3, 4, 5]}]}]})",
                  "4:41: materials[0]: parameter \"t\": 5 components, expected 1 to 4");
    expectRefused(m + R"(  {"tag": "t", "type": 0, "components": 3, "value": [1, 2]}]}]})",
                  "4:53: materials[0]: \"value\" must be an array of 3 numbers");
    expectRefused(m + R"(  {"tag": "t", "type": 0, "components": 1, "value": [1]},
  {"tag": "t", "type": 2, "components": 1, "value": [1]}]}]})",
                  "5:11: materials[0]: parameter \"t\" is defined twice");
    expectRefused(m + R"(  {"tag": "t", "type": 0, "components": 1, "value": [1]}]},
  {"name": "d", "parent": "m", "parameters": [{"tag": "t", "type": 0, "components": 2, "value": [1, 2]}]}]})",
                  "5:47: materials[1]: parameter \"t\" overrides the base's type 0 with 1 components; it must keep them");
}
