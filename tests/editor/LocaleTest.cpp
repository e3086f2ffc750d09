#include "editor/Locale.h"

#include "editor/DataDir.h"
#include "kit/jString.h"
#include "support/Scenario.h"

#include <string>

namespace {

// Every key the track editor passes to tr(): window, pickers, settings, file and message boxes.
const char* const EDITOR_KEYS[] = {
    "E", "T", "OK", "Cancel", "Yes", "No", "apply_hierarchy", "attribute", "begin", "clear",
    "delete_config", "end", "find", "internal_node", "load", "max_time", "min_time", "name",
    "not_supported", "open", "save", "select_data_type", "select_internal_node", "select_material",
    "select_node", "select_param", "settings", "time", "type", "value", "warning",
};

// The toolbar icons; each has a tooltip under "tip_" plus its name.
const char* const ICONS[] = {
    "new_track", "del_track", "arrange_x", "arrange_y", "arrange_xy", "key_remove",
    "key", "key_constant", "key_linear", "key_smooth", "key_break", "key_auto",
    "setting", "time_prev", "time_play", "time_next", "time_loop", "dialog_other",
};

class LocaleTest : public Scenario {
protected:
    void SetUp() override
    {
        Scenario::SetUp();
        DataDir::set(KUVO_DATA_DIR);
    }
};

} // namespace

TEST_F(LocaleTest, KnownKeysGiveTheirEnglishText)
{
    EXPECT_STREQ(tr("load"), "Load");
    EXPECT_STREQ(tr("select_node"), "Select node");
    EXPECT_STREQ(tr("min_time"), "Start time");
    EXPECT_STREQ(tr("max_time"), "End time");
    EXPECT_STREQ(tr("OK"), "OK");
    EXPECT_STREQ(tr("Cancel"), "Cancel");
    EXPECT_STREQ(tr(jString("warning")), "Warning");
}

TEST_F(LocaleTest, UnknownKeyGivesTheKeyItself)
{
    const char* key = "no_such_key";
    EXPECT_EQ(tr(key), key);
    EXPECT_STREQ(tr("Load"), "Load"); // keys are case-sensitive: "Load" is not "load"
    jString held("still_unknown");
    EXPECT_EQ(tr(held), held.c_str());
    EXPECT_EQ(Locale::get().find("no_such_key"), nullptr);
}

TEST_F(LocaleTest, EveryKeyTheEditorUsesHasAText)
{
    for (const char* key : EDITOR_KEYS) {
        const char* text = Locale::get().find(key);
        ASSERT_NE(text, nullptr) << key;
        EXPECT_STRNE(text, "") << key;
    }
}

TEST_F(LocaleTest, EveryToolbarIconHasATooltip)
{
    for (const char* icon : ICONS) {
        std::string key = std::string("tip_") + icon;
        const char* text = Locale::get().find(key.c_str());
        ASSERT_NE(text, nullptr) << key;
        EXPECT_GT(std::string(text).size(), 3u) << key;
    }
}

TEST_F(LocaleTest, LoadReplacesTheTable)
{
    TempDir dir;
    ASSERT_TRUE(writeFileText(dir.file("de.json"), "{\"load\": \"Laden\", \"save\": \"Speichern\"}"));
    Locale table;
    ASSERT_TRUE(table.load(dir.file("de.json").c_str()));
    EXPECT_EQ(table.size(), 2);
    EXPECT_STREQ(table.find("load"), "Laden");
    EXPECT_EQ(table.find("clear"), nullptr);
}

TEST_F(LocaleTest, MalformedFileIsReportedAndKeepsTheTable)
{
    TempDir dir;
    ASSERT_TRUE(writeFileText(dir.file("ok.json"), "{\"load\": \"Laden\"}"));
    ASSERT_TRUE(writeFileText(dir.file("broken.json"), "{\"load\": \"Laden\",\n \"save\" }"));
    Locale table;
    ASSERT_TRUE(table.load(dir.file("ok.json").c_str()));
    EXPECT_FALSE(table.load(dir.file("broken.json").c_str()));
    expectLogged("broken.json");
    EXPECT_STREQ(table.find("load"), "Laden");
    EXPECT_FALSE(table.load(dir.file("missing.json").c_str()));
    expectLogged("missing.json");
    EXPECT_EQ(table.size(), 1);
}

TEST_F(LocaleTest, NonTextEntryIsReportedByName)
{
    TempDir dir;
    ASSERT_TRUE(writeFileText(dir.file("bad.json"), "{\"load\": \"Laden\",\n \"save\": 3}"));
    Locale table;
    EXPECT_FALSE(table.load(dir.file("bad.json").c_str()));
    expectLogged("\"save\" is not a string");
    EXPECT_EQ(table.size(), 0);
    ASSERT_TRUE(writeFileText(dir.file("list.json"), "[\"load\"]"));
    EXPECT_FALSE(table.load(dir.file("list.json").c_str()));
    expectLogged("not a JSON object");
}
