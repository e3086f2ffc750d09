#include "AutomationScript.h"

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
                             "expect-title Anim - New Track*\n"
                             "expect-log saved\n"
                             "expect-no-errors\n"
                             "screenshot out/editor.png\n"
                             "quit\n",
                             "t.script"))
        << script.getError();
    const auto& c = script.getCommands();
    ASSERT_EQ(c.size(), 16u);
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
    EXPECT_EQ(c[11].text, "Anim - New Track*");
    EXPECT_EQ(c[13].verb, ScriptCommand::EXPECT_NO_ERRORS);
    EXPECT_EQ(c[14].text, "out/editor.png");
    EXPECT_EQ(c[15].verb, ScriptCommand::QUIT);
}

TEST_F(AutomationScriptTest, NamedKeysUseTheToolkitKeyCodes)
{
    ScriptCommand key;
    ASSERT_TRUE(AutomationScript::parseKey("escape", key));
    EXPECT_EQ(key.keyCode, UI_KEY_ESCAPE);
    EXPECT_EQ(key.keyCode, 256);
    ASSERT_TRUE(AutomationScript::parseKey("enter", key));
    EXPECT_EQ(key.keyCode, 257);
    ASSERT_TRUE(AutomationScript::parseKey("tab", key));
    EXPECT_EQ(key.keyCode, 258);
    ASSERT_TRUE(AutomationScript::parseKey("backspace", key));
    EXPECT_EQ(key.keyCode, 259);
    ASSERT_TRUE(AutomationScript::parseKey("up", key));
    EXPECT_EQ(key.keyCode, 268);
    ASSERT_TRUE(AutomationScript::parseKey("down", key));
    EXPECT_EQ(key.keyCode, 269);
    ASSERT_TRUE(AutomationScript::parseKey("home", key));
    EXPECT_EQ(key.keyCode, UI_KEY_HOME);
    ASSERT_TRUE(AutomationScript::parseKey("end", key));
    EXPECT_EQ(key.keyCode, UI_KEY_END);
    ASSERT_TRUE(AutomationScript::parseKey("a", key));
    EXPECT_EQ(key.keyCode, 'A');
    ASSERT_TRUE(AutomationScript::parseKey("Z", key));
    EXPECT_EQ(key.keyCode, 'Z');
    ASSERT_TRUE(AutomationScript::parseKey("7", key));
    EXPECT_EQ(key.keyCode, '7');
    ASSERT_TRUE(AutomationScript::parseKey("delete", key));
    EXPECT_EQ(key.keyCode, 260);
    ASSERT_TRUE(AutomationScript::parseKey("left", key));
    EXPECT_EQ(key.keyCode, 266);
    ASSERT_TRUE(AutomationScript::parseKey("right", key));
    EXPECT_EQ(key.keyCode, 267);
    ScriptCommand space;
    ASSERT_TRUE(AutomationScript::parseKey("shift+space", space));
    EXPECT_EQ(space.keyCode, 32);
    EXPECT_TRUE(space.shift);
    ScriptCommand plus;
    ASSERT_TRUE(AutomationScript::parseKey("ctrl++", plus));
    EXPECT_EQ(plus.keyCode, '+');
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
        {"click 10\n", "s.txt:1: click needs X Y"},
        {"click @keys 1 2\n", "s.txt:1: unknown view \"@keys\" (use @lines, @rows, @timebar or @curves)"},
        {"drag 1 2 3 4 alt\n", "s.txt:1: drag modifier must be ctrl or shift, not \"alt\""},
        {"drag 1 2 3\n", "s.txt:1: drag needs X1 Y1 X2 Y2"},
        {"click 1 2 3\n", "s.txt:1: too many arguments for click"},
        {"answer maybe\n", "s.txt:1: unknown answer \"maybe\""},
        {"answer color 1 1 1\n", "s.txt:1: answer color needs R G B A"},
        {"answer file\n", "s.txt:1: answer file needs a PATH"},
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
