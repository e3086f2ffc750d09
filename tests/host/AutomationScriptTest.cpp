#include "AutomationScript.h"

#include <utility>

#include "support/Scenario.h"
#include "ui/UIEvent.h"

using AutomationScriptTest = Scenario;

TEST_F(AutomationScriptTest, ParsesEveryCommandWithItsLineNumber)
{
    AutomationScript script;
    ASSERT_TRUE(script.parse("# select two keys and move them\n"
                             "frames 3\n"
                             "\n"
                             "press time_play\n"
                             "key ctrl+k\n"
                             "click 10 20\n"
                             "dclick @lines 5.5 6\n"
                             "drag @rows 1 2 3 4 shift\n"
                             "type 1.25\n"
                             "answer choose Node.position\n"
                             "answer file data/samples/walk.anim\n"
                             "answer color 1 0.5 0 1\n"
                             "answer cancel\n"
                             "answer select Node\n"
                             "answer press internal_node\n"
                             "answer find Lamp 0\n"
                             "answer screenshot out/picker.png\n"
                             "expect-title Anim - New Track*\n"
                             "expect-log saved\n"
                             "expect-no-errors\n"
                             "screenshot out/editor.png\n"
                             "quit\n",
                             "t.script"))
        << script.getError();
    const auto& c = script.getCommands();
    ASSERT_EQ(c.size(), 20u);
    EXPECT_EQ(c[0].verb, ScriptCommand::FRAMES);
    EXPECT_EQ(c[0].count, 3);
    EXPECT_EQ(c[0].line, 2);
    EXPECT_EQ(c[1].text, "time_play");
    EXPECT_EQ(c[1].line, 4);
    EXPECT_EQ(c[2].keyCode, 'K'); // letters take their upper-case codes, as the toolkit's keys do
    EXPECT_TRUE(c[2].ctrl);
    EXPECT_EQ(c[3].view, "");
    EXPECT_EQ(c[3].points, (std::vector<float>{10, 20}));
    EXPECT_EQ(c[4].view, "lines");
    EXPECT_EQ(c[4].points, (std::vector<float>{5.5f, 6}));
    EXPECT_EQ(c[5].verb, ScriptCommand::DRAG);
    EXPECT_EQ(c[5].view, "rows");
    EXPECT_EQ(c[5].points.size(), 4u);
    EXPECT_TRUE(c[5].shift);
    EXPECT_FALSE(c[5].ctrl);
    EXPECT_EQ(c[6].text, "1.25");
    EXPECT_EQ(c[7].text, "choose");
    EXPECT_EQ(c[7].argument, "Node.position");
    EXPECT_EQ(c[8].argument, "data/samples/walk.anim");
    EXPECT_EQ(c[9].points, (std::vector<float>{1, 0.5f, 0, 1}));
    EXPECT_EQ(c[10].text, "cancel");
    EXPECT_EQ(c[11].text, "select");
    EXPECT_EQ(c[11].argument, "Node");
    EXPECT_EQ(c[12].argument, "internal_node");
    EXPECT_EQ(c[13].argument, "Lamp 0"); // the rest of the line
    EXPECT_EQ(c[14].argument, "out/picker.png");
    EXPECT_EQ(c[15].text, "Anim - New Track*");
    EXPECT_EQ(c[17].verb, ScriptCommand::EXPECT_NO_ERRORS);
    EXPECT_EQ(c[18].text, "out/editor.png");
    EXPECT_EQ(c[19].verb, ScriptCommand::QUIT);
}

// Scripts name keys as a user reads them; each must reach the editor as the toolkit's own key code.
TEST_F(AutomationScriptTest, NamedKeysUseTheToolkitKeyCodes)
{
    const std::pair<const char*, int> keys[] = {
        {"escape", UI_KEY_ESCAPE}, {"enter", 257}, {"tab", 258}, {"backspace", 259}, {"delete", 260},
        {"left", 266}, {"right", 267}, {"up", 268}, {"down", 269}, {"home", UI_KEY_HOME}, {"end", UI_KEY_END},
        {"a", 'A'}, {"Z", 'Z'}, {"7", '7'}, {"ctrl++", '+'}};
    for (const auto& [name, code] : keys) {
        ScriptCommand key;
        ASSERT_TRUE(AutomationScript::parseKey(name, key)) << name;
        EXPECT_EQ(key.keyCode, code) << name;
    }
    ScriptCommand space;
    ASSERT_TRUE(AutomationScript::parseKey("shift+space", space));
    EXPECT_EQ(space.keyCode, 32);
    EXPECT_TRUE(space.shift);
    ScriptCommand bad;
    EXPECT_FALSE(AutomationScript::parseKey("hyper+k", bad));
    EXPECT_FALSE(AutomationScript::parseKey("pagedown", bad));
}

TEST_F(AutomationScriptTest, ErrorsNameTheScriptLineAndProblem)
{
    struct Case {
        const char* text;
        const char* error;
    };
    const Case cases[] = {
        {"frames 2\njump 3\n", "s.txt:2: unknown command \"jump\""},
        {"frames -1\n", "s.txt:1: frames needs a whole number N >= 0"},
        {"frames 1.5\n", "s.txt:1: frames needs a whole number N >= 0"},
        {"idle 0\n", "s.txt:1: idle needs a number of seconds above 0"},
        {"click 10\n", "s.txt:1: click needs X Y"},
        {"click @keys 1 2\n", "s.txt:1: unknown view \"@keys\" (use @lines, @rows, @timebar or @curves)"},
        {"drag 1 2 3 4 alt\n", "s.txt:1: drag modifier must be ctrl or shift, not \"alt\""},
        {"drag 1 2 3\n", "s.txt:1: drag needs X1 Y1 X2 Y2"},
        {"click 1 2 3\n", "s.txt:1: too many arguments for click"},
        {"answer maybe\n", "s.txt:1: unknown answer \"maybe\""},
        {"answer color 1 1 1\n", "s.txt:1: answer color needs R G B A"},
        {"answer file\n", "s.txt:1: answer file needs a PATH"},
        {"answer\n",
         "s.txt:1: answer needs choose, select, press, find, screenshot, file, ok, cancel, yes, no or color"},
        {"answer select \n", "s.txt:1: answer select needs a dotted item path"},
        {"answer press\n", "s.txt:1: answer press needs a button KEY"},
        {"answer find\n", "s.txt:1: answer find needs a TEXT"},
        {"answer screenshot\n", "s.txt:1: answer screenshot needs a PATH"},
        {"answer ok now\n", "s.txt:1: answer ok takes no argument"},
        {"key\n", "s.txt:1: key needs one key spec such as ctrl+k, delete, left or space"},
        {"screenshot\n", "s.txt:1: screenshot needs an argument"},
        {"quit now\n", "s.txt:1: quit takes no argument"},
    };
    for (const Case& c : cases) {
        AutomationScript script;
        EXPECT_FALSE(script.parse(c.text, "s.txt")) << c.text;
        EXPECT_EQ(script.getError(), c.error);
        EXPECT_TRUE(script.getCommands().empty());
    }
}

TEST_F(AutomationScriptTest, MissingFileIsReportedWithItsPath)
{
    AutomationScript script;
    EXPECT_FALSE(script.load("/nonexistent/run.script"));
    EXPECT_EQ(script.getError(), "/nonexistent/run.script: cannot read the script");
}
