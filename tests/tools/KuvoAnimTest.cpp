#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "io/mjl.h"
#include "support/Scenario.h"

namespace {

// Runs the built kuvo-anim; every scenario gets its own folder for files and captured output.
class KuvoAnimTest : public Scenario {
protected:
    struct Result {
        int status;
        std::string out;
        std::string err;
    };

    // Runs kuvo-anim with its output going to output (a file of the folder, read back, unless given).
    Result run(const std::string& arguments, const std::string& output = "")
    {
        std::string command = std::string(KUVO_BIN_DIR) + "/kuvo-anim " + arguments + " >" +
                              (output.empty() ? dir.file("out.txt") : output) + " 2>" + dir.file("err.txt");
        int raw = std::system(command.c_str());
        int status = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
        return {status, output.empty() ? readFileText(dir.file("out.txt")) : "", readFileText(dir.file("err.txt"))};
    }

    // Writes a track file into the folder and returns its path.
    std::string track(const std::string& name, const std::string& text)
    {
        EXPECT_TRUE(writeFileText(dir.file(name), text));
        return dir.file(name);
    }

    // A track document around the given parameters.
    static std::string document(const std::string& parameters)
    {
        return "{\"format\": \"kuvo-anim\", \"version\": 1, \"begin\": 0, \"end\": 2, \"loop\": true,\n"
               "\"parameters\": [\n" +
               parameters + "]}\n";
    }

    TempDir dir;
};

const char* const LIGHT = R"({"kind": 1, "type": "Light.intensity", "node": {"id": 4, "name": "Sun"},
 "keys": [[0, 1, 0, 0, 0, 0, 1], [2, 3, 0, 0, 0, 0, 1]]})";

TEST_F(KuvoAnimTest, ValidateAcceptsAGoodFile)
{
    std::string path = track("good.anim", document(LIGHT));
    Result r = run("validate " + path);
    EXPECT_EQ(r.status, 0) << r.out << r.err;
    EXPECT_EQ(r.out, path + ": valid, 1 parameters\n");
}

TEST_F(KuvoAnimTest, ValidateNamesEveryProblemWithItsPlace)
{
    struct Case {
        const char* parameters;
        const char* line;
    } cases[] = {
        {R"({"kind": 1, "type": "Light.glow", "keys": []})", ":3:21: type \"Light.glow\" is not registered"},
        {R"({"kind": 0, "type": "Node.enabled", "keys": [[1, 1], [0.5, 0]]})",
         ":3:54: keys are not sorted by time: 0.5 comes after 1"},
        {R"({"kind": 0, "type": "Node.enabled", "keys": [[-1, 1]]})", ":3:47: time is negative"},
        {R"({"kind": 1, "type": "Camera.fov", "keys": [[0, 1e300, 0, 0, 0, 0, 1]]})",
         ":3:48: value is not finite as a 32-bit float"},
        {R"({"kind": 1, "type": "Camera.fov", "keys": [[1e300, 1, 0, 0, 0, 0, 1]]})",
         ":3:45: time is not finite as a 32-bit float"},
        {R"({"kind": 11, "type": "Camera.fov"})", ":3:10: kind 11 is not a parameter kind (0 to 9)"},
        {R"({"kind": 1, "type": "Camera.fov"})", ":3:1: missing field \"keys\""},
        {R"({"type": "Camera.fov", "keys": []})", ":3:1: missing field \"kind\""},
    };
    for (const Case& c : cases) {
        std::string path = track("bad.anim", document(c.parameters));
        Result r = run("validate " + path);
        EXPECT_EQ(r.status, 1) << c.parameters;
        EXPECT_EQ(r.out, path + c.line + "\n") << c.parameters;
    }
}

TEST_F(KuvoAnimTest, ValidateReportsSyntaxErrorsAndSeveralProblemsAtOnce)
{
    std::string path = track("broken.anim", "{\"version\": 1,\n  \"begin\": 0,,\n}");
    Result r = run("validate " + path);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out.rfind(path + ":2:", 0), 0u) << r.out;
    EXPECT_EQ(std::count(r.out.begin(), r.out.end(), '\n'), 1);

    path = track("two.anim", "{\"version\": 1, \"begin\": -2, \"parameters\": []}");
    r = run("validate " + path);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path + ":1:1: missing field \"end\"\n" + path + ":1:25: time is negative\n");

    // Problems in parameters read apart (a large track's halves) come out in the file's order.
    path = track("halves.anim", document(R"({"kind": 11, "type": "Camera.fov"}, {"kind": 1, "type": "Camera.fov",
 "keys": []}, {"kind": 0, "type": "Node.enabled", "keys": [[-1, 1]]})"));
    r = run("validate " + path);
    EXPECT_EQ(r.out, path + ":3:10: kind 11 is not a parameter kind (0 to 9)\n" + path + ":4:61: time is negative\n");

    path = track("range.anim", "{\"version\": 1, \"begin\": 5, \"end\": 2.5, \"parameters\": []}");
    r = run("validate " + path);
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, path + ":1:35: end 2.5 comes before begin 5\n");
}

TEST_F(KuvoAnimTest, InfoDescribesTheRangeAndEveryParameter)
{
    std::string path = track("info.anim", document(std::string(LIGHT) + R"(,
 {"kind": 3, "type": "Material.color", "material": {"name": "brick", "tag": "albedo", "hierarchy": true},
  "keys": [[0, 1, 0, 0, 1]]},
 {"kind": 2, "type": "Render.exposure", "enabled": false, "keys": []},
 {"kind": 6, "type": "Engine.events", "keys": [[0, "a"]]})"));
    Result r = run("info " + path);
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "file: " + path +
                         "\n"
                         "range: 0 .. 2 s\n"
                         "loop: yes\n"
                         "parameters: 4\n"
                         "  0: kind 1 (float) Light.intensity \"Light.intensity\", node 4 \"Sun\", 2 keys\n"
                         "  1: kind 3 (color) Material.color \"Material.color\", material \"brick\" tag \"albedo\" "
                         "with derived materials, 1 key\n"
                         "  2: kind 2 (double) Render.exposure \"Render.exposure\", world, 0 keys, disabled\n"
                         "  3: kind 6 (opaque) Engine.events \"Engine.events\", unbound, 1 key\n");
}

TEST_F(KuvoAnimTest, FmtRewritesCanonicallyInPlaceOrToAnotherFile)
{
    std::string path = track("loose.anim", document(LIGHT));
    Result r = run("fmt " + path + " -o " + dir.file("canonical.anim"));
    EXPECT_EQ(r.status, 0) << r.err;
    std::string canonical = readFileText(dir.file("canonical.anim"));
    EXPECT_NE(canonical.find("\n        [2.0, 3.0, 0.0, 0.0, 0.0, 0.0, 1]\n"), std::string::npos) << canonical;
    EXPECT_EQ(readFileText(path), document(LIGHT));
    EXPECT_EQ(run("fmt " + path).status, 0);
    EXPECT_EQ(readFileText(path), canonical);
    EXPECT_EQ(run("fmt " + path).status, 0);
    EXPECT_EQ(readFileText(path), canonical);
}

TEST_F(KuvoAnimTest, FmtLeavesAnInvalidFileAlone)
{
    std::string text = document(R"({"kind": 0, "type": "Node.enabled", "keys": [[1, 1], [0.5, 0]]})");
    std::string path = track("bad.anim", text);
    Result r = run("fmt " + path);
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find(path + ":3:"), std::string::npos) << r.err;
    EXPECT_EQ(readFileText(path), text);

    r = run("fmt " + track("good.anim", document(LIGHT)) + " -o " + dir.file("missing/out.anim"));
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, dir.file("missing/out.anim") +
                         ": cannot create a temporary file beside it: No such file or directory\n");
}

TEST_F(KuvoAnimTest, EvalPrintsEveryParameterAtTheGivenTimes)
{
    std::string path = track("eval.anim", document(std::string(LIGHT) + R"(,
 {"kind": 4, "type": "Node.position", "components": [
   {"keys": [[0, 1, 0, 0, 0, 0, 0]]}, {"keys": []}, {"keys": [[0, 0, 0, 0, 0, 0, 1], [2, 4, 0, 0, 0, 0, 1]]}]},
 {"kind": 0, "type": "Node.enabled", "keys": [[0, 0], [1, 1]]},
 {"kind": 3, "type": "Light.color", "keys": [[0, 0, 0, 0, 1], [2, 1, 0.5, 0, 1]]},
 {"kind": 9, "type": "Object.material", "keys": [[0, "glass"], [1, "metal"]]},
 {"kind": 7, "type": "Track.play", "file": [[0, "samples/pulse.anim"]], "time": [[0, 0, 0, 0, 0, 0, 1], [2, 1, 0, 0, 0, 0, 1]]},
 {"kind": 6, "type": "Engine.events"})"));
    Result r = run("eval " + path + " --times 0,1");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "{\n"
                     "  \"file\": \"" + path + "\",\n"
                     "  \"parameters\": [\n"
                     "    {\n      \"index\": 0,\n      \"kind\": 1,\n      \"type\": \"Light.intensity\",\n"
                     "      \"name\": \"Light.intensity\",\n      \"samples\": [\n"
                     "        [0.0, 1.0],\n        [1.0, 2.0]\n      ]\n    },\n"
                     "    {\n      \"index\": 1,\n      \"kind\": 4,\n      \"type\": \"Node.position\",\n"
                     "      \"name\": \"Node.position\",\n      \"samples\": [\n"
                     "        [0.0, 1.0, 0.0, 0.0],\n        [1.0, 1.0, 0.0, 2.0]\n      ]\n    },\n"
                     "    {\n      \"index\": 2,\n      \"kind\": 0,\n      \"type\": \"Node.enabled\",\n"
                     "      \"name\": \"Node.enabled\",\n      \"samples\": [\n"
                     "        [0.0, 0],\n        [1.0, 1]\n      ]\n    },\n"
                     "    {\n      \"index\": 3,\n      \"kind\": 3,\n      \"type\": \"Light.color\",\n"
                     "      \"name\": \"Light.color\",\n      \"samples\": [\n"
                     "        [0.0, 0.0, 0.0, 0.0, 1.0],\n        [1.0, 0.5, 0.25, 0.0, 1.0]\n      ]\n    },\n"
                     "    {\n      \"index\": 4,\n      \"kind\": 9,\n      \"type\": \"Object.material\",\n"
                     "      \"name\": \"Object.material\",\n      \"samples\": [\n"
                     "        [0.0, \"glass\"],\n        [1.0, \"metal\"]\n      ]\n    },\n"
                     "    {\n      \"index\": 5,\n      \"kind\": 7,\n      \"type\": \"Track.play\",\n"
                     "      \"name\": \"Track.play\",\n      \"samples\": [\n"
                     "        [0.0, \"samples/pulse.anim\", 0.0],\n        [1.0, \"samples/pulse.anim\", 0.5]\n"
                     "      ]\n    },\n"
                     "    {\n      \"index\": 6,\n      \"kind\": 6,\n      \"type\": \"Engine.events\",\n"
                     "      \"name\": \"Engine.events\",\n      \"samples\": []\n    }\n"
                     "  ]\n"
                     "}\n");
}

TEST_F(KuvoAnimTest, EvalStepsThroughARange)
{
    std::string path = track("range.anim", document(LIGHT));
    Result r = run("eval " + path + " --from 0 --to 1 --step 0.25");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("[0.0, 1.0],\n        [0.25, 1.25],\n        [0.5, 1.5],\n        [0.75, 1.75],\n"
                         "        [1.0, 2.0]\n"),
              std::string::npos)
        << r.out;
}

TEST_F(KuvoAnimTest, EvalReadsComponentsWithoutKeysFromTheScene)
{
    std::string path = track("scene.anim", document(R"({"kind": 4, "type": "Node.position", "node": {"id": 2},
  "components": [{"keys": []}, {"keys": [[0, 9, 0, 0, 0, 0, 1]]}, {"keys": []}]})"));
    Result r = run("eval " + path + " --times 0 --world " + KUVO_DATA_DIR + "/samples/demo.world");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_NE(r.out.find("[0.0, 2.0, 9.0, 3.5]"), std::string::npos) << r.out;
}

// Bytes of the file name that are not UTF-8 are written as \u00XX escapes; a value that overflows
// a double, or output that cannot be written, is an error rather than a silent success.
TEST_F(KuvoAnimTest, EvalWritesAnyFileNameAsJsonAndNeverSucceedsWithoutOutput)
{
    std::string path = track("caf\xe9\xed\xa0\x80.anim", document(LIGHT));
    Result r = run("eval " + path + " --times 0");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out.substr(0, r.out.find(",\n")),
              "{\n  \"file\": \"" + dir.path() + "/caf\\u00e9\\u00ed\\u00a0\\u0080.anim\"");
    mjl reader;
    EXPECT_TRUE(reader.parse(r.out.data(), r.out.size(), "eval output")) << reader.getError();
    r = run("eval " + path + " --times 0", "/dev/full");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.err, "kuvo-anim: the output cannot be written: No space left on device\n");

    path = track("huge.anim", document(R"({"kind": 2, "type": "Render.exposure",
        "keys": [[0, -1.7e308, 0, 0, 0, 0, 1], [1, 1.7e308, 0, 0, 0, 0, 1]]})"));
    r = run("eval " + path + " --times 0.5");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(r.out, "");
    EXPECT_EQ(r.err, path + ": the values cannot be written: parameters[0].samples[0][1] is not a finite number\n");
}

TEST_F(KuvoAnimTest, UsageErrorsExitWithTwoAndExplainHelpExitsWithZero)
{
    std::string path = track("ok.anim", document(LIGHT));
    std::vector<std::string> wrong = {"",
                                      "frobnicate x",
                                      "info",
                                      "fmt",
                                      "validate a b",
                                      "eval " + path,
                                      "eval " + path + " --times 0,x",
                                      "eval " + path + " --from 1 --to 0 --step 1",
                                      "eval " + path + " --times 1 --from 0 --to 1 --step 1",
                                      "import-gltf a.gltf",
                                      "export-gltf " + path + " out.gltf"};
    for (const std::string& args : wrong) {
        Result r = run(args);
        EXPECT_EQ(r.status, 2) << args;
        EXPECT_NE(r.err.find("Usage: kuvo-anim"), std::string::npos) << args;
    }
    Result help = run("--help");
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.err, "");
    for (const char* option : {"Usage: kuvo-anim", "-o OUT", "--times", "--from A --to B --step S", "--world SCENE"})
        EXPECT_NE(help.out.find(option), std::string::npos) << option;
    Result missing = run("info " + dir.file("missing.anim"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, dir.file("missing.anim") + ": cannot open: No such file or directory\n");
    missing = run("eval " + path + " --times 0 --world " + dir.file("missing.world"));
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.err, dir.file("missing.world") + ": cannot open: No such file or directory\n");
}

TEST_F(KuvoAnimTest, GltfExportAndImportCarryTheSceneNodesAnimation)
{
    std::string world = std::string(KUVO_DATA_DIR) + "/samples/demo.world";
    std::string demo = std::string(KUVO_DATA_DIR) + "/samples/demo.anim";
    Result out = run("export-gltf " + demo + " " + dir.file("demo.glb") + " --world " + world);
    EXPECT_EQ(out.status, 0) << out.err;
    EXPECT_NE(out.err.find("warning: " + demo + ": parameter \"Sun colour\" (Light.color) is not exported"),
              std::string::npos);
    Result in = run("import-gltf " + dir.file("demo.glb") + " " + dir.file("back.anim") + " --animation demo --world " + world);
    EXPECT_EQ(in.status, 0) << in.err;
    // Bound to the scene's nodes of the glTF nodes' names; the scale's keys came through as they were.
    std::string info = run("info " + dir.file("back.anim")).out;
    for (const char* line : {"parameters: 3\n", "Node.position \"Crate translation\", node 20 \"Crate\"",
                             "Node.rotation \"Pillar rotation\", node 2 \"Pillar\"",
                             "Node.scale \"Pond scale\", node 3 \"Pond\", 9 keys"})
        EXPECT_NE(info.find(line), std::string::npos) << line << info;
    // A file that is not glTF: the error names it, and nothing is written.
    Result bad = run("import-gltf " + demo + " " + dir.file("bad.anim"));
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err.rfind(demo + ": not a readable glTF file", 0), 0u) << bad.err;
    EXPECT_EQ(readFileText(dir.file("bad.anim")), "<missing>");
}

} // namespace
