#include "editor/Locale.h"

#include "editor/DataDir.h"
#include "kit/jString.h"
#include "support/Scenario.h"

#include <QImage>

#include <cstdlib>
#include <string>

namespace {

// The toolbar icons the track editor shows.
const char* const ICONS[] = {
    "new_track", "del_track", "arrange_x", "arrange_y", "arrange_xy", "key_remove",
    "key", "key_constant", "key_linear", "key_smooth", "key_break", "key_auto",
    "setting", "time_prev", "time_play", "time_next", "time_loop", "dialog_other",
};

class EditorDataTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        DataDir::set(KUVO_DATA_DIR);
    }
};

} // namespace

// The texts the editor shows; a key the table lacks shows as itself, and keys are case-sensitive.
TEST_F(EditorDataTest, KeysGiveTheirEnglishTextAndUnknownKeysThemselves)
{
    EXPECT_STREQ(tr("select_node"), "Select node");
    EXPECT_STREQ(tr(jString("warning")), "Warning");
    const char* key = "Load"; // not "load"
    EXPECT_EQ(tr(key), key);
}

// Every toolbar icon has a tooltip and its drawings at 32 and 16 pixels.
TEST_F(EditorDataTest, EveryToolbarIconHasATooltipAndBothDrawings)
{
    for (const char* icon : ICONS) {
        SCOPED_TRACE(icon);
        const char* tip = Locale::get().find((std::string("tip_") + icon).c_str());
        EXPECT_NE(tip, nullptr);
        std::string base = DataDir::iconDir() + icon;
        QImage large(QString::fromStdString(base + ".png"), "PNG");
        QImage small(QString::fromStdString(base + "@16.png"), "PNG");
        EXPECT_EQ(large.size(), QSize(32, 32));
        EXPECT_EQ(small.size(), QSize(16, 16));
    }
}

// A broken translation file is reported by path and reason and leaves the table as it was.
TEST_F(EditorDataTest, BadTranslationFilesAreReportedAndKeepTheTable)
{
    TempDir dir;
    ASSERT_TRUE(writeFileText(dir.file("de.json"), "{\"load\": \"Laden\", \"save\": \"Speichern\"}"));
    ASSERT_TRUE(writeFileText(dir.file("broken.json"), "{\"load\": \"Laden\",\n \"save\" }"));
    ASSERT_TRUE(writeFileText(dir.file("number.json"), "{\"load\": \"Laden\",\n \"save\": 3}"));
    ASSERT_TRUE(writeFileText(dir.file("list.json"), "[\"load\"]"));
    Locale table;
    ASSERT_TRUE(table.load(dir.file("de.json").c_str()));
    EXPECT_FALSE(table.load(dir.file("broken.json").c_str()));
    expectLogged("cannot read translations \"" + dir.file("broken.json") + "\"");
    EXPECT_FALSE(table.load(dir.file("missing.json").c_str()));
    expectLogged("missing.json");
    EXPECT_FALSE(table.load(dir.file("number.json").c_str()));
    expectLogged("line 2: the text of \"save\" is not a string");
    EXPECT_FALSE(table.load(dir.file("list.json").c_str()));
    expectLogged("not a JSON object");
    EXPECT_EQ(table.size(), 2);
    EXPECT_STREQ(table.find("save"), "Speichern");
    EXPECT_EQ(table.find("clear"), nullptr);
}

// The data root is the one set, else the environment's, else "data"; editor paths resolve
// under it and absolute paths stay as they are.
TEST_F(EditorDataTest, EditorPathsResolveUnderTheDataRoot)
{
    DataDir::set("/opt/kuvo/data/");
    EXPECT_EQ(DataDir::resolve("data/core/editor/gui/key.png"), "/opt/kuvo/data/core/editor/gui/key.png");
    EXPECT_EQ(DataDir::resolve("scenes/demo.world"), "/opt/kuvo/data/scenes/demo.world");
    EXPECT_EQ(DataDir::resolve("/home/me/walk.anim"), "/home/me/walk.anim");
    EXPECT_EQ(DataDir::iconDir(), "/opt/kuvo/data/core/editor/gui/");
    DataDir::set(nullptr);
    setenv("KUVO_DATA_DIR", "/srv/kuvo-data/", 1);
    EXPECT_EQ(DataDir::get(), "/srv/kuvo-data");
    unsetenv("KUVO_DATA_DIR");
    EXPECT_EQ(DataDir::resolve("data/core/editor/locale/en.json"), "data/core/editor/locale/en.json");
    DataDir::set(KUVO_DATA_DIR);
}
