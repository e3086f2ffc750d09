#include "PluginLibrary.h"

#include "support/Scenario.h"

using PluginLibraryTest = Scenario;

TEST_F(PluginLibraryTest, LoadsALibraryAndCallsItsEntryPoint)
{
    PluginLibrary plugin;
    ASSERT_TRUE(plugin.open(KUVO_BIN_DIR "/libsample_plugin.so")) << plugin.getError();
    auto answer = reinterpret_cast<int (*)()>(plugin.symbol("kuvo_sample_plugin_answer"));
    ASSERT_NE(answer, nullptr) << plugin.getError();
    EXPECT_EQ(answer(), 42);
    plugin.close();
    EXPECT_FALSE(plugin.isOpen());
}

TEST_F(PluginLibraryTest, MissingLibraryNamesThePathAndTheLoadersReason)
{
    PluginLibrary plugin;
    EXPECT_FALSE(plugin.open("/nonexistent/libtrack_editor.so"));
    EXPECT_EQ(plugin.getError().rfind("/nonexistent/libtrack_editor.so: ", 0), 0u) << plugin.getError();
    EXPECT_NE(plugin.getError().find("No such file"), std::string::npos) << plugin.getError();
    EXPECT_EQ(plugin.symbol("anything"), nullptr);
    EXPECT_NE(plugin.getError().find("no library is loaded"), std::string::npos);
}

TEST_F(PluginLibraryTest, MissingSymbolIsReportedWithItsName)
{
    PluginLibrary plugin;
    ASSERT_TRUE(plugin.open(KUVO_BIN_DIR "/libsample_plugin.so"));
    EXPECT_EQ(plugin.symbol("kuvo_no_such_entry"), nullptr);
    EXPECT_NE(plugin.getError().find("symbol kuvo_no_such_entry"), std::string::npos) << plugin.getError();
}
